// The tables of electronic tax bills, which step 138 of product A makes.
#include "patch/brelt/BreltTables.h"

namespace tavrel::patch::brelt {

namespace {

constexpr Column kTaxBill[] = {
    {"h_appv_no", "VARCHAR(24)", NoDefault, NotNull},
    {"h_tax_type", "INT", "1", NotNull},
    {"h_writedate", "DATE", NoDefault, NotNull},
    {"h_issuedate", "DATE", NoDefault, NotNull},
    {"h_transdate", "DATE", NoDefault, NotNull},
    {"h_comp_name", "VARCHAR(70)", Empty, NotNull},
    {"h_ceo_name", "VARCHAR(30)", Empty, NotNull},
    {"h_comp_sn", "VARCHAR(14)", Empty, NotNull},
    {"h_sub_comp_sn", "VARCHAR(4)", Empty, NotNull},
    {"h_addr", "VARCHAR(150)", Empty, NotNull},
    {"h_email", "VARCHAR(50)", Empty, NotNull},
    {"h_biz_status", "VARCHAR(40)", Empty, NotNull},
    {"h_biz_item", "VARCHAR(40)", Empty, NotNull},
    {"h_comp_name_add", "VARCHAR(70)", Empty, NotNull},
    {"h_ceo_name_add", "VARCHAR(30)", Empty, NotNull},
    {"h_comp_sn_add", "VARCHAR(14)", Empty, NotNull},
    {"h_sub_comp_sn_add", "VARCHAR(4)", Empty, NotNull},
    {"h_addr_add", "VARCHAR(150)", Empty, NotNull},
    {"h_email_add", "VARCHAR(50)", Empty, NotNull},
    {"h_biz_status_add", "VARCHAR(40)", Empty, NotNull},
    {"h_biz_item_add", "VARCHAR(40)", Empty, NotNull},
    {"h_clsnm", "VARCHAR(10)", Empty, NotNull},
    {"h_kndnm", "VARCHAR(10)", Empty, NotNull},
    {"h_kind", "INT", "0", NotNull},
    {"h_appv_no_t", "VARCHAR(24)", Empty, NotNull},
    {"h_isntype", "VARCHAR(20)", Empty, NotNull},
    {"h_recved_yn", "INT", "1", NotNull},
    {"h_pname", "VARCHAR(100)", Empty, NotNull},
    {"h_sup_amt", "DOUBLE", "0", NotNull},
    {"h_vat", "DOUBLE", "0", NotNull},
    {"h_tot_amt", "DOUBLE", "0", NotNull},
    {"h_remarks", "VARCHAR(100)", Empty, NotNull},
    {"h_changereason", "VARCHAR(100)", Empty, NotNull},
    {"h_taxno", "VARCHAR(12)", "NULL", Null},
    {"data_created", "DATETIME", NoDefault, NotNull},
    {"data_creator", "INT", "0", NotNull},
    {"data_updated", "DATETIME", "NOW()", NotNull},
    {"data_updater", "INT", "0", NotNull},
    {"h_cashno", "INT", "NULL", Null},
};

constexpr Column kTaxBillLine[] = {
    {"h_appv_no", "VARCHAR(24)", NoDefault, NotNull},
    {"seq", "INT", "0", NotNull},
    {"dealdate", "DATE", NoDefault, NotNull},
    {"pname", "VARCHAR(100)", Empty, NotNull},
    {"qty", "DOUBLE", "0", NotNull},
    {"price", "DOUBLE", "0", NotNull},
    {"sup_amt", "DOUBLE", "0", NotNull},
    {"vat", "DOUBLE", "0", NotNull},
    {"remarks", "VARCHAR(100)", Empty, NotNull},
    {"data_created", "DATETIME", NoDefault, NotNull},
    {"data_creator", "INT", "0", NotNull},
    {"data_updated", "DATETIME", "NOW()", NotNull},
    {"data_updater", "INT", "0", NotNull},
};

constexpr Item kTablesOfStep138[] = {
    Procedure{"CreateTBL_h_tax"},
    Table{"sale_h_tax_m", "h_appv_no"},
    Columns{kTaxBill},
    Run{"CREATE INDEX idx_sale_h_tax_m__h_tax_type ON sale_h_tax_m(h_tax_type)"},
    Run{"CREATE INDEX idx_sale_h_tax_m__h_writedate ON sale_h_tax_m(h_writedate)"},
    Run{"CREATE INDEX idx_sale_h_tax_m__h_issuedate ON sale_h_tax_m(h_issuedate)"},
    Run{"CREATE INDEX idx_sale_h_tax_m__h_transdate ON sale_h_tax_m(h_transdate)"},
    Run{"CREATE INDEX idx_sale_h_tax_m__h_kind ON sale_h_tax_m(h_kind)"},
    Run{"CREATE INDEX fk_sale_h_tax_m_h_taxno ON sale_h_tax_m(h_taxno)"},
    Run{"CREATE INDEX idx_sale_h_tax_m_h_cashno ON sale_h_tax_m(h_cashno)"},
    Table{"sale_h_tax_d", "h_appv_no, seq"},
    Columns{kTaxBillLine},
    Constraint{"fk_sale_h_tax_d__h_appv_no", "sale_h_tax_d.h_appv_no", "sale_h_tax_m.h_appv_no"},
    Table{"buy_h_tax_m", "h_appv_no"},
    Columns{kTaxBill},
    Run{"CREATE INDEX idx_buy_h_tax_m__h_tax_type ON buy_h_tax_m(h_tax_type)"},
    Run{"CREATE INDEX idx_buy_h_tax_m__h_writedate ON buy_h_tax_m(h_writedate)"},
    Run{"CREATE INDEX idx_buy_h_tax_m__h_issuedate ON buy_h_tax_m(h_issuedate)"},
    Run{"CREATE INDEX idx_buy_h_tax_m__h_transdate ON buy_h_tax_m(h_transdate)"},
    Run{"CREATE INDEX idx_buy_h_tax_m__h_kind ON buy_h_tax_m(h_kind)"},
    Run{"CREATE INDEX fk_buy_h_tax_m_h_taxno ON buy_h_tax_m(h_taxno)"},
    Run{"CREATE INDEX idx_buy_h_tax_m_h_cashno ON buy_h_tax_m(h_cashno)"},
    Table{"buy_h_tax_d", "h_appv_no, seq"},
    Columns{kTaxBillLine},
    Constraint{"fk_buy_h_tax_d__h_appv_no", "buy_h_tax_d.h_appv_no", "buy_h_tax_m.h_appv_no"},
    Table{"product_h_sync", "pcode, pname"},
    Column{"pcode", "VARCHAR(6)", NoDefault, NotNull},
    Column{"pname", "VARCHAR(100)", Empty, NotNull},
    Constraint{"fk_product_h_sync__pcode", "product_h_sync.pcode", "product_m.code"},
    Table{"customer_h_sync", "ccode, custname"},
    Column{"ccode", "VARCHAR(6)", NoDefault, NotNull},
    Column{"custname", "VARCHAR(100)", Empty, NotNull},
    Constraint{"fk_customer_h_sync__ccode", "customer_h_sync.ccode", "customer.code"},
};

}  // namespace

Items TablesOfStep138() {
    return kTablesOfStep138;
}

}  // namespace tavrel::patch::brelt
