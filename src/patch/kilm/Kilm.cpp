#include "patch/Driver.h"
#include "patch/Modules.h"
#include "patch/Runner.h"
#include "patch/kilm/KilmSteps.h"
#include "patch/kilm/KilmTables.h"

namespace tavrel::modDBPatch_KILM {

namespace {

patch::Script MakeSteps() {
    patch::Script steps({patch::kilm::Steps()}, modDBPatch_BRELT::Steps());
    steps.Apply(patch::kilm::DifferencesInSteps());
    return steps;
}

patch::Script MakeProcedures() {
    patch::Script procedures =
        modDBPatch_BRELT::Procedures().CalledBy(Steps()).With(patch::kilm::OwnTables());
    procedures.Apply(patch::kilm::DifferencesInTables());
    procedures.Apply(patch::kilm::DifferencesInTablesOfB());
    return procedures;
}

}  // namespace

const patch::Script& Steps() {
    static const patch::Script kSteps = MakeSteps();
    return kSteps;
}

const patch::Script& Procedures() {
    static const patch::Script kProcedures = MakeProcedures();
    return kProcedures;
}

bool ChkDBpatch_SUB(std::int16_t version) {
    patch::RunSteps(Steps(), Procedures(), version);
    return true;
}

bool ChkDBpatch() {
    return patch::RunDriver(kTarget, ChkDBpatch_SUB);
}

}  // namespace tavrel::modDBPatch_KILM
