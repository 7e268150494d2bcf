// Product C's steps and table-creation procedures: it shares nothing with the others.
#pragma once

#include "patch/Item.h"

namespace tavrel::patch::norb {

Items Steps();
Items Tables();

}  // namespace tavrel::patch::norb
