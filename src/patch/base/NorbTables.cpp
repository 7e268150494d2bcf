// Product C at version 1.
#include "patch/base/BaseTables.h"

namespace tavrel::patch::base {

namespace {

constexpr Item kNorbBaseTables[] = {
    Step{1},
    Table{"dbversion", "dbid"},
    Column{"dbid", "VARCHAR(10)", Empty, NotNull},
    Column{"ver", "LONG", "0", NotNull},

    Table{"office", "code"},
    Column{"code", "SMALLINT", "1", NotNull},
    Column{"compname", "VARCHAR(40)", Empty, NotNull},
    Column{"compsn", "VARCHAR(14)", Empty, NotNull},
    Column{"ceoname", "VARCHAR(30)", Empty, NotNull},
    Column{"addr1", "VARCHAR(60)", Empty, NotNull},
    Column{"addr2", "VARCHAR(40)", Empty, NotNull},
    Column{"telno", "VARCHAR(20)", Empty, NotNull},
    Column{"fax", "VARCHAR(20)", Empty, NotNull},
    Column{"hpno", "VARCHAR(20)", Empty, NotNull},
    Column{"bigo", "VARCHAR(50)", Empty, NotNull},

    Table{"local_user", "code"},
    Column{"code", "VARCHAR(2)", Empty, NotNull},
    Column{"name", "VARCHAR(20)", Empty, NotNull},
    Column{"loginid", "VARCHAR(10)", Empty, NotNull},
    Column{"loginpwd", "VARCHAR(10)", Empty, NotNull},

    Table{"customer", "code"},
    Column{"code", "VARCHAR(6)", Empty, NotNull},
    Column{"compname", "VARCHAR(40)", Empty, NotNull},
    Column{"compsn", "VARCHAR(14)", Empty, NotNull},
    Column{"ceoname", "VARCHAR(30)", Empty, NotNull},
    Column{"addr1", "VARCHAR(60)", Empty, NotNull},
    Column{"addr2", "VARCHAR(40)", Empty, NotNull},
    Column{"telno", "VARCHAR(20)", Empty, NotNull},
    Column{"fax", "VARCHAR(20)", Empty, NotNull},
    Column{"hpno", "VARCHAR(20)", Empty, NotNull},
    Column{"email", "VARCHAR(40)", Empty, NotNull},
    Column{"bigo", "VARCHAR(100)", Empty, NotNull},
    Column{"regdate", "VARCHAR(10)", Empty, NotNull},

    Table{"sale_m", "code"},
    Column{"code", "VARCHAR(12)", Empty, NotNull},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"ccode", "VARCHAR(6)", Empty, NotNull},
    Column{"dealdate", "VARCHAR(10)", Empty, NotNull},
    Column{"amount", "DOUBLE", "0", NotNull},
    Column{"tax", "DOUBLE", "0", NotNull},
    Column{"bigo", "VARCHAR(50)", Empty, NotNull},
    Relation{"sale_m_cust_fk", "sale_m.ccode", "customer.code", Cascade::Update},

    Table{"sale_d", "code, seq"},
    Column{"code", "VARCHAR(12)", Empty, NotNull},
    Column{"seq", "SMALLINT", "1", NotNull},
    Column{"pname", "VARCHAR(50)", Empty, NotNull},
    Column{"norm", "VARCHAR(50)", Empty, NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},
    Column{"price", "DOUBLE", "0", NotNull},
    Column{"amount", "DOUBLE", "0", NotNull},
    Column{"tax", "DOUBLE", "0", NotNull},
    Relation{"sale_d_m_fk", "sale_d.code", "sale_m.code", Cascade::Update},

    Table{"taxlist_m", "code"},
    Column{"code", "VARCHAR(12)", Empty, NotNull},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"ccode", "VARCHAR(6)", Empty, NotNull},
    Column{"part", "SMALLINT", "0", NotNull},
    Column{"dealdate", "VARCHAR(10)", Empty, NotNull},
    Column{"amount", "DOUBLE", "0", NotNull},
    Column{"tax", "DOUBLE", "0", NotNull},
    Column{"bigo", "VARCHAR(50)", Empty, NotNull},
    Relation{"taxlist_m_cust_fk", "taxlist_m.ccode", "customer.code", Cascade::Update},
};

}  // namespace

Items NorbBaseTables() {
    return kNorbBaseTables;
}

}  // namespace tavrel::patch::base
