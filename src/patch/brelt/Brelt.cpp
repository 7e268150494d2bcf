#include "patch/Driver.h"
#include "patch/Modules.h"
#include "patch/Runner.h"
#include "patch/brelt/BreltTables.h"
#include "patch/log/Report.h"

namespace tavrel::modDBPatch_BRELT {

using namespace patch::brelt;

const patch::Script& Steps() {
    static const patch::Script kSteps{Steps2To53(), Steps54To96(), Steps97To141()};
    return kSteps;
}

const patch::Script& Procedures() {
    static const patch::Script kProcedures{TablesOfSteps3To53(), TablesOfSteps58To116(),
                                           TablesOfSteps127To133(), TablesOfStep138()};
    return kProcedures;
}

bool ChkDBpatch_SUB(std::int16_t version) {
    try {
        patch::RunSteps(Steps(), Procedures(), version);
        return true;
    } catch (const Error& error) {
        patch::ReportFailure(error, "ChkDBpatch_SUB", patch::kUpdateModule);
        return false;
    }
}

bool ChkDBpatch() {
    return patch::RunDriver(kTarget, ChkDBpatch_SUB);
}

}  // namespace tavrel::modDBPatch_BRELT
