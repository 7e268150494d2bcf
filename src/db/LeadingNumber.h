// The leading number of a text, for those who work with the session.
#pragma once

#include "text/LeadingNumber.h"

namespace tavrel::db {

using text::LeadingNumber;

}  // namespace tavrel::db
