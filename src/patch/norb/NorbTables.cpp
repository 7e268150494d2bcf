// Product C's table-creation procedures.
#include "patch/norb/NorbTables.h"

namespace tavrel::patch::norb {

namespace {

constexpr Item kTables[] = {
    Procedure{"CreateTBL_priv_menu"},
    Table{"priv_menu", "menuid, ucode"},
    Column{"menuid", "LONG", "0", NotNull},
    Column{"ucode", "VARCHAR(2)", Apostrophes, NotNull},

    Procedure{"CreateTBL_receive"},
    Table{"receive", "code"},
    Column{"code", "AUTOINCREMENT"},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"dealdate", "VARCHAR(10)", Apostrophes, NotNull},
    Column{"ccode", "VARCHAR(6)", Apostrophes, NotNull},
    Column{"amount", "DOUBLE", "0", NotNull},
    Column{"dc", "DOUBLE", "0", NotNull},
    Column{"charge", "VARCHAR(2)", Apostrophes, NotNull},
    Column{"bigo", "VARCHAR(50)", Apostrophes, NotNull},
    Column{"regucode", "VARCHAR(2)", Apostrophes, NotNull},
    Column{"deallistno", "VARCHAR(12)", Apostrophes, NotNull},
    Column{"dealtime", "VARCHAR(4)", "'0000'", NotNull},
    Index{"idx_recv_dealdate", "receive", "dealdate"},
    Relation{"recv_cust_fk", "receive.ccode", "customer.code", Cascade::Both},
    Relation{"recv_office_fk", "receive.ocode", "office.code", Cascade::Both},
    Relation{"recv_user_fk", "receive.regucode", "local_user.code", Cascade::Both},
};

}  // namespace

Items Tables() {
    return kTables;
}

}  // namespace tavrel::patch::norb
