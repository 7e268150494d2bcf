// What the databases of products B and B-Pro have from the outset and no list creates: manufacturing.
#include "patch/base/BaseTables.h"

namespace tavrel::patch::base {

namespace {

constexpr Item kMakeListTables[] = {
    Step{1},
    Table{"makelist_m", "code"},
    Column{"code", "AUTOINCREMENT"},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"scode", "SMALLINT", "1", NotNull},
    Column{"ccode", "VARCHAR(6)", Empty, NotNull},
    Column{"dealdate", "VARCHAR(10)", Empty, NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},
    Column{"pcucost", "DOUBLE", "0", NotNull},
    Column{"pccost", "DOUBLE", "0", NotNull},
    Column{"badqnt", "DOUBLE", "0", NotNull},
    Column{"recyle", "DOUBLE", "0", NotNull},
    Column{"price", "DOUBLE", "0", NotNull},
    Column{"bigo", "VARCHAR(50)", Empty, NotNull},

    Table{"makelist_d", "code, pcode"},
    Column{"code", "LONG", "0", NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"unitqnt", "DOUBLE", "0", NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},
    Column{"price", "DOUBLE", "0", NotNull},
};

constexpr Item kMakeOrderTables[] = {
    Step{1},
    Table{"makeord_m", "code"},
    Column{"code", "VARCHAR(12)", Empty, NotNull},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"scode", "SMALLINT", "1", NotNull},
    Column{"ccode", "VARCHAR(6)", Empty, NotNull},
    Column{"dealdate", "VARCHAR(10)", Empty, NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},
    Column{"istate", "SMALLINT", "0", NotNull},
    Column{"bigo", "VARCHAR(50)", Empty, NotNull},
};

}  // namespace

Items MakeListTables() {
    return kMakeListTables;
}

Items MakeOrderTables() {
    return kMakeOrderTables;
}

}  // namespace tavrel::patch::base
