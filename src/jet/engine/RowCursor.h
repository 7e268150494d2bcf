#pragma once

#include "jet/catalog/RowCursor.h"
