#include "patch/norb/NorbTables.h"

namespace tavrel::patch::norb {

namespace {

constexpr Item kSteps[] = {
    Step{2},
    Run{"ALTER TABLE taxlist_m ADD COLUMN etax   LONG    DEFAULT 0   NOT NULL"},
    Run{"UPDATE taxlist_m SET etax = 0 WHERE etax IS NULL"},
    Step{3},
    Run{"ALTER TABLE office ADD COLUMN email TEXT(50) DEFAULT \"\" NOT NULL"},
    Run{"UPDATE office SET email = '' WHERE email IS NULL"},
    Step{4},
    Run{"ALTER TABLE taxlist_m ADD COLUMN admission     BYTE   DEFAULT 1    NOT NULL"},
    Run{"UPDATE taxlist_m SET admission = 1 WHERE admission IS NULL"},
    Step{5},
    Run{"ALTER TABLE taxlist_m ADD COLUMN etaxpubcode TEXT(50) DEFAULT \"\" NOT NULL"},
    Run{"UPDATE taxlist_m SET etaxpubcode = '' WHERE etaxpubcode is null"},
    Step{6},
    Run{"ALTER TABLE customer ADD COLUMN sub_bd_no TEXT(4) DEFAULT \"\" NOT NULL"},
    Run{"UPDATE customer SET sub_bd_no = '' WHERE sub_bd_no is null"},
    Run{"ALTER TABLE office ADD COLUMN sub_bd_no TEXT(4) DEFAULT \"\" NOT NULL"},
    Run{"UPDATE office SET sub_bd_no = '' WHERE sub_bd_no is null"},
    Step{7},
    Run{"ALTER TABLE customer ADD COLUMN etaxcharge TEXT(30) DEFAULT \"\" NOT NULL"},
    Run{"UPDATE `customer` SET `etaxcharge` = `ceoname` WHERE `etaxcharge` = '' OR `etaxcharge` IS NULL"},
    Run{"ALTER TABLE customer ADD COLUMN etaxhp TEXT(20) DEFAULT \"\" NOT NULL"},
    Run{"UPDATE `customer` SET `etaxhp` = `hpno` WHERE `etaxhp` = '' OR `etaxhp` IS NULL"},
    Run{"ALTER TABLE customer ADD COLUMN etaxemail TEXT(100) DEFAULT \"\" NOT NULL"},
    Run{"UPDATE `customer` SET `etaxemail` = `email` WHERE `etaxemail` = '' OR `etaxemail` IS NULL"},
    Step{8},
    Run{"ALTER TABLE taxlist_m ADD COLUMN userok BYTE DEFAULT 0 NOT NULL"},
    Run{"UPDATE taxlist_m SET userok = 0 WHERE userok IS NULL"},
    Step{9},
    Call{"CreateTBL_priv_menu"},
    Call{"CreateTBL_receive"},
    Step{10},
    Run{"ALTER TABLE taxlist_m ADD COLUMN cng_reason TEXT(10) DEFAULT \"\" NOT NULL"},
    Run{"UPDATE taxlist_m SET cng_reason = '' WHERE cng_reason IS NULL"},
    Step{12},
    Alter{"taxlist_m.bigo", Varchar(150), Empty},
    Step{13},
    Run{"ALTER TABLE `sale_m` ADD COLUMN `maildate` VARCHAR(10) DEFAULT \"\" NOT NULL"},
    Run{"UPDATE `sale_m` SET `maildate` = '' WHERE `maildate` IS NULL"},
    Step{14},
    Add{"customer.data_created", Date, "Now()", None},
    Add{"customer.data_creator", Varchar(2), Empty, Fill},
    Add{"customer.data_updated", Date, "Now()", None},
    Add{"customer.data_updater", Varchar(2), Empty, Fill},
};

}  // namespace

Items Steps() {
    return kSteps;
}

}  // namespace tavrel::patch::norb
