#include "patch/Driver.h"
#include "patch/Modules.h"
#include "patch/Runner.h"
#include "patch/kilm/KilmTables.h"
#include "patch/kilmpro/KilmProSteps.h"

namespace tavrel::modDBPatch_KILMPRO {

namespace {

patch::Script MakeSteps() {
    patch::Script steps({patch::kilmpro::Steps()}, modDBPatch_BRELT::Steps());
    steps.Apply(patch::kilmpro::DifferencesInSteps());
    return steps;
}

patch::Script MakeProcedures() {
    patch::Script procedures = modDBPatch_BRELT::Procedures().CalledBy(Steps());
    procedures.Apply(patch::kilm::DifferencesInTables());
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

}  // namespace tavrel::modDBPatch_KILMPRO
