// The tables that a product's databases have before the first step of its list.  No list creates them: this
// is what new, demonstration and test databases begin with, as far as the lists know it.
#pragma once

#include "patch/Item.h"

namespace tavrel::patch::base {

// Product A, in two parts.
Items MasterTables();
Items OtherTables();
// What products B and B-Pro have more.
Items MakeListTables();
Items MakeOrderTables();
// Product C.
Items NorbBaseTables();

}  // namespace tavrel::patch::base
