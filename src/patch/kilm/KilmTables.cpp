#include "patch/kilm/KilmTables.h"

namespace tavrel::patch::kilm {

namespace {

constexpr Item kOwnTables[] = {
    Procedure{"CreateTBL_makelist_o"},
    Table{"makelist_o", "seq"},
    Column{"seq", "AUTOINCREMENT"},
    Column{"makeno", "VARCHAR(20)", Empty, NotNull},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"scode", "SMALLINT", "1", NotNull},
    Column{"part", "SMALLINT", "0", NotNull},
    Column{"istate", "SMALLINT", "0", NotNull},
    Column{"ccode", "VARCHAR(6)", Empty, NotNull},
    Column{"dealdate", "VARCHAR(10)", Empty, NotNull},
    Column{"dlvdate", "VARCHAR(10)", Empty, NotNull},
    Column{"dlvplace", "VARCHAR(100)", Empty, NotNull},
    Column{"recvtype", "VARCHAR(100)", Empty, NotNull},
    Column{"bigo", "TEXT", Empty, NotNull},
    Relation{"fk_office_makeout", "makelist_o.ocode", "office.code", Cascade::Both},
    Relation{"fk_shouse_makeout", "makelist_o.scode", "storehouse.code", Cascade::Both},
    Relation{"fk_cust_makeout", "makelist_o.ccode", "customer.code", Cascade::Both},

    Procedure{"CreateTBL_makeplan"},
    Table{"makeplan_m", "code"},
    Column{"code", "AUTOINCREMENT"},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"scode", "SMALLINT", "1", NotNull},
    Column{"dealdate", "VARCHAR(10)", Empty, NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},
    Column{"price", "DOUBLE", "0", NotNull},
    Column{"bigo", "VARCHAR(50)", Empty, NotNull},
    Column{"makecode", "LONG", "0", NotNull},
    Relation{"fk_office_makeplan_m", "makeplan_m.ocode", "office.code", Cascade::Both},
    Relation{"fk_shouse_makeplan_m", "makeplan_m.scode", "storehouse.code", Cascade::Both},
    Relation{"fk_prod_makeplan_m", "makeplan_m.pcode", "product_m.code", Cascade::Both},
    Table{"makeplan_d", "code, pcode"},
    Column{"code", "LONG", "0", NotNull},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"unitqnt", "DOUBLE", "0", NotNull},
    Column{"qnt", "DOUBLE", "0", NotNull},
    Column{"price", "DOUBLE", "0", NotNull},
    Relation{"fk_makeplan_m_makeplan_d", "makeplan_d.code", "makeplan_m.code", Cascade::Both},
    Relation{"fk_prod_makeplan_d", "makeplan_d.pcode", "product_m.code", Cascade::Both},
};

constexpr Item kTableDifferences[] = {
    Procedure{"CreateTBL_custprodinterest"},
    InsteadOf{"custprodinterest_pcode_fk"},
    Index{"idx_custprodinterest_pcode", "custprodinterest", "pcode", Unique::Yes},

    Procedure{"CreateTBL_h_tax"},
    InsteadOf{"fk_product_h_sync__pcode"},
    InsteadOf{"fk_customer_h_sync__ccode"},
};

constexpr Item kTableDifferencesOfB[] = {
    Procedure{"CreateTBL_serial"},
    InsteadOf{"idx_serial_serial"},
    Index{"idx_serial_ocode", "serial", "ocode"},
    InsteadOf{"idx_serial_codet"},

    Procedure{"CreateTBL_delcar"},
    InsteadOf{"fk_office_delcar"},
    Relation{"fk_office_delcar", "delcar.ocode", "office.code", Cascade::Delete},

    Procedure{"CreateTBL_pclsdc"},
    InsteadOf{"fk_cust_pclsdc"},
    Relation{"fk_cust_pclsdc", "pclsdc.ccode", "customer.code", Cascade::Delete},
    InsteadOf{"fk_pcls_pclsdc"},
    Relation{"fk_pcls_pclsdc", "pclsdc.clscode", "pclass.code", Cascade::Delete},

    Procedure{"CreateTBL_qltydc"},
    InsteadOf{"fk_cust_qltydc"},
    Relation{"fk_cust_qltydc", "qltydc.ccode", "customer.code", Cascade::Delete},
    InsteadOf{"fk_qlty_qltydc"},
    Relation{"fk_qlty_qltydc", "qltydc.qcode", "qlty.code", Cascade::Delete},

    Procedure{"CreateTBL_constrt"},
    InsteadOf{"ocode"},
    Column{"ocode", "SMALLINT", "0", NotNull},

    Procedure{"CreateTBL_aslist"},
    InsteadOf{"asmemo"},
    Column{"asmemo", "VARCHAR(100)", Empty, NotNull},
};

}  // namespace

Items OwnTables() {
    return kOwnTables;
}

Items DifferencesInTables() {
    return kTableDifferences;
}

Items DifferencesInTablesOfB() {
    return kTableDifferencesOfB;
}

}  // namespace tavrel::patch::kilm
