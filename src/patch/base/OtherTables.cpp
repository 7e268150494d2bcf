// Product A at version 1: the rest.
#include "patch/base/BaseTables.h"

namespace tavrel::patch::base {

namespace {

constexpr Item kOtherTables[] = {
    Step{1},
    Table{"bankbook", "code"},
    Column{"code", "VARCHAR(4)", Empty, NotNull},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"bkname", "VARCHAR(30)", Empty, NotNull},
    Column{"number", "VARCHAR(20)", Empty, NotNull},
    Column{"owner", "VARCHAR(20)", Empty, NotNull},
    Column{"baln", "DOUBLE", "0", NotNull},

    Table{"accounts", "code"},
    Column{"code", "VARCHAR(4)", Empty, NotNull},
    Column{"name", "VARCHAR(30)", Empty, NotNull},
    Column{"part", "SMALLINT", "0", NotNull},

    Table{"cashbook", "code"},
    Column{"code", "AUTOINCREMENT"},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"acode", "VARCHAR(4)", Empty, NotNull},
    Column{"part", "SMALLINT", "0", NotNull},
    Column{"amount", "DOUBLE", "0", NotNull},
    Column{"dealdate", "VARCHAR(10)", Empty, NotNull},
    Column{"bigo", "VARCHAR(100)", Empty, NotNull},
    Relation{"cashbook_account_fk", "cashbook.acode", "accounts.code", Cascade::Update},

    Table{"schedules", "code"},
    Column{"code", "AUTOINCREMENT"},
    Column{"plandate", "VARCHAR(10)", Empty, NotNull},
    Column{"plantime", "VARCHAR(5)", Empty, NotNull},
    Column{"title", "VARCHAR(50)", Empty, NotNull},
    Column{"memo", "TEXT", Empty, NotNull},

    Table{"estimate_m", "code"},
    Column{"code", "VARCHAR(12)", Empty, NotNull},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"ccode", "VARCHAR(6)", Empty, NotNull},
    Column{"dealdate", "VARCHAR(10)", Empty, NotNull},
    Column{"paytype", "VARCHAR(50)", Empty, NotNull},
    Column{"valid", "VARCHAR(50)", Empty, NotNull},
    Column{"charge", "VARCHAR(2)", Empty, NotNull},
    Column{"bigo", "VARCHAR(100)", Empty, NotNull},

    Table{"estimate_d", "code, seq"},
    Column{"code", "VARCHAR(12)", Empty, NotNull},
    Column{"seq", "SMALLINT", "1", NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},
    Column{"price", "DOUBLE", "0", NotNull},
    Column{"amount", "DOUBLE", "0", NotNull},
    Relation{"estimate_d_m_fk", "estimate_d.code", "estimate_m.code", Cascade::Update},

    Table{"ordbook_m", "code"},
    Column{"code", "VARCHAR(12)", Empty, NotNull},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"ccode", "VARCHAR(6)", Empty, NotNull},
    Column{"dealdate", "VARCHAR(10)", Empty, NotNull},
    Column{"dlvdate", "VARCHAR(10)", Empty, NotNull},
    Column{"istate", "SMALLINT", "0", NotNull},
    Column{"bigo", "VARCHAR(100)", Empty, NotNull},
    Relation{"ordbook_m_cust_fk", "ordbook_m.ccode", "customer.code", Cascade::Update},

    Table{"ordbook_d", "code, seq"},
    Column{"code", "VARCHAR(12)", Empty, NotNull},
    Column{"seq", "LONG", "1", NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},
    Column{"price", "DOUBLE", "0", NotNull},
    Column{"bigo", "VARCHAR(50)", Empty, NotNull},
    Relation{"ordbook_d_m_fk", "ordbook_d.code", "ordbook_m.code", Cascade::Update},

    Table{"special_price", "ccode, pcode"},
    Column{"ccode", "VARCHAR(6)", Empty, NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"sdate", "VARCHAR(10)", Empty, NotNull},
    Column{"price", "DOUBLE", "0", NotNull},
    Relation{"special_price_cust_fk", "special_price.ccode", "customer.code", Cascade::Update},
    Relation{"special_price_prod_fk", "special_price.pcode", "product_m.code", Cascade::Update},

    Table{"special_dc", "ccode, pcode"},
    Column{"ccode", "VARCHAR(6)", Empty, NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"sdate", "VARCHAR(10)", Empty, NotNull},
    Column{"dcrate", "DOUBLE", "0", NotNull},

    Table{"multy_price", "pcode, grade"},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"grade", "SMALLINT", "1", NotNull},
    Column{"price", "DOUBLE", "0", NotNull},

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

    Table{"taxlist_d", "code, seq"},
    Column{"code", "VARCHAR(12)", Empty, NotNull},
    Column{"seq", "SMALLINT", "1", NotNull},
    Column{"pname", "VARCHAR(50)", Empty, NotNull},
    Column{"norm", "VARCHAR(50)", Empty, NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},
    Column{"price", "DOUBLE", "0", NotNull},
    Column{"amount", "DOUBLE", "0", NotNull},
    Column{"tax", "DOUBLE", "0", NotNull},
    Relation{"taxlist_d_m_fk", "taxlist_d.code", "taxlist_m.code", Cascade::Update},

    Table{"invn_base", "ocode, scode, pcode"},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"scode", "SMALLINT", "1", NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},
    Column{"price", "DOUBLE", "0", NotNull},
    Column{"basedate", "VARCHAR(10)", Empty, NotNull},

    Table{"invn_real", "ocode, scode, pcode"},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"scode", "SMALLINT", "1", NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},

    Table{"invn_edit", "code"},
    Column{"code", "AUTOINCREMENT"},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"scode", "SMALLINT", "1", NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},
    Column{"price", "DOUBLE", "0", NotNull},
    Column{"dealdate", "VARCHAR(10)", Empty, NotNull},
    Column{"bigo", "VARCHAR(100)", Empty, NotNull},

    Table{"cust_base", "ocode, ccode"},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"ccode", "VARCHAR(6)", Empty, NotNull},
    Column{"baln_sale", "DOUBLE", "0", NotNull},
    Column{"baln_buy", "DOUBLE", "0", NotNull},
    Column{"basedate", "VARCHAR(10)", Empty, NotNull},
};

}  // namespace

Items OtherTables() {
    return kOtherTables;
}

}  // namespace tavrel::patch::base
