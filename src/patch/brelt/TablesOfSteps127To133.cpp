// Table-creation procedures that steps 127 to 133 of product A call.
#include "patch/brelt/BreltTables.h"

namespace tavrel::patch::brelt {

namespace {

constexpr Item kTablesOfSteps127To133[] = {
    Procedure{"CreateTBL_repairlist"},
    Table{"repairlist", "code"},
    Column{"code", "AUTOINCREMENT"},
    Column{"key_code", "VARCHAR(100)", NoDefault, NotNull},
    Column{"repair_type", "INT", "0", NotNull},
    Column{"repair_state", "INT", "0", NotNull},
    Column{"cale_date", "DATETIME", NoDefault, Null},
    Column{"data_created", "DATETIME", NoDefault, NotNull},

    Procedure{"CreateTBL_calclist_temp"},
    Table{"calclist_temp", "pcode, ocode"},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"caltype", "INT", "0", NotNull},

    Procedure{"CreateTBL_calclist_temp2"},
    Run{"DROP TABLE `calclist_temp`"},
    Table{"calclist_temp", "pcode, ocode, basem"},
    Column{"pcode", "VARCHAR(6)", Empty, NotNull},
    Column{"ocode", "SMALLINT", "1", NotNull},
    Column{"basem", "VARCHAR(10)", Empty, NotNull},
    Table{"calcmonthlist_temp", "basem"},
    Column{"basem", "VARCHAR(10)", Empty, NotNull},
    Column{"calcyn", "SMALLINT", "0", NotNull},

    Procedure{"CreateTBL_approval_details"},
    Table{"approval_details", "code"},
    Column{"code", "AUTOINCREMENT"},
    Column{"old_code", "INT", NoDefault, NotNull},
    Column{"trade_number", "VARCHAR(30)", Empty, NotNull},
    Column{"licensee_name", "VARCHAR(70)", Empty, NotNull},
    Column{"licensee_number", "VARCHAR(14)", Empty, NotNull},
    Column{"licensee_owner", "VARCHAR(30)", Empty, NotNull},
    Column{"licensee_address", "VARCHAR(250)", Empty, NotNull},
    Column{"licensee_phone", "VARCHAR(40)", Empty, NotNull},
    Column{"trade_type", "VARCHAR(10)", Empty, NotNull},
    Column{"card_name", "VARCHAR(50)", Empty, NotNull},
    Column{"installment", "VARCHAR(2)", Empty, NotNull},
    Column{"auth_number", "VARCHAR(10)", Empty, NotNull},
    Column{"auth_date", "VARCHAR(30)", Empty, NotNull},
    Column{"card_comp", "VARCHAR(200)", Empty, NotNull},
    Column{"cancel_flag", "VARCHAR(2)", Empty, NotNull},
    Column{"franchise_number", "VARCHAR(15)", Empty, NotNull},
    Column{"tax_mode", "INT", "-1", NotNull},
    Column{"auth_sum", "INT", "-1", NotNull},
    Column{"remarks", "VARCHAR(100)", Empty, NotNull},
    Column{"data_created", "DATETIME", NoDefault, NotNull},
    Column{"data_creator", "INT", "0", NotNull},
    Column{"data_updated", "DATETIME", "NOW()", NotNull},
    Column{"data_updater", "INT", "0", NotNull},

    Procedure{"CreateTBL_androidsettings"},
    Table{"androidsettings", "app_code, user_code, wifi_mac"},
    Column{"app_code", "VARCHAR(3)", Empty, NotNull},
    Column{"user_code", "VARCHAR(2)", Empty, NotNull},
    Column{"wifi_mac", "VARCHAR(20)", Empty, NotNull},
    Column{"devicename", "VARCHAR(50)", Empty, NotNull},
    Column{"settings", "TEXT", NoDefault, Null},
    Column{"data_created", "DATETIME", NoDefault, NotNull},
    Column{"data_updated", "DATETIME", "NOW()", NotNull},
};

}  // namespace

Items TablesOfSteps127To133() {
    return kTablesOfSteps127To133;
}

}  // namespace tavrel::patch::brelt
