#include "patch/base/BaseDatabase.h"

#include "db/Session.h"
#include "patch/Modules.h"
#include "patch/Runner.h"
#include "patch/base/BaseTables.h"

namespace tavrel::patch {

namespace {

constexpr std::int16_t kBefore = 0;

void Make(Items tables) {
    RunSteps(Script{tables}, {}, kBefore);
}

/// Product A's tables after the steps up to `last`.
void MakeBreltUpTo(std::int16_t last) {
    Make(base::MasterTables());
    Make(base::OtherTables());
    RunSteps(modDBPatch_BRELT::Steps(), modDBPatch_BRELT::Procedures(), 1, last);
}

void StoreVersionOne() {
    modDBsub::DBExecute("INSERT INTO dbversion (dbid, ver) VALUES ('main', 1)");
}

}  // namespace

void MakeBaseOfBrelt() {
    MakeBreltUpTo(1);
    StoreVersionOne();
}

// Product B's databases have what steps 2 and 3 of product A add, and the manufacturing tables.
void MakeBaseOfKilm() {
    MakeBreltUpTo(3);
    Make(base::MakeListTables());
    Make(base::MakeOrderTables());
    StoreVersionOne();
}

// Product B-Pro begins where product A stood at step 53.
void MakeBaseOfKilmPro() {
    MakeBreltUpTo(53);
    Make(base::MakeOrderTables());
    modDBsub::DBExecute("ALTER TABLE ordbook_d ADD COLUMN workordno VARCHAR(12) DEFAULT \"\" NOT NULL");
    StoreVersionOne();
}

void MakeBaseOfNorb() {
    Make(base::NorbBaseTables());
    StoreVersionOne();
}

}  // namespace tavrel::patch
