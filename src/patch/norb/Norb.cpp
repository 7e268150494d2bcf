#include "patch/Driver.h"
#include "patch/Modules.h"
#include "patch/Runner.h"
#include "patch/norb/NorbTables.h"

namespace tavrel::modDBPatch_NORB {

const patch::Script& Steps() {
    static const patch::Script kSteps{patch::norb::Steps()};
    return kSteps;
}

const patch::Script& Procedures() {
    static const patch::Script kProcedures{patch::norb::Tables()};
    return kProcedures;
}

bool ChkDBpatch() {
    return patch::RunDriver(kTarget, [](std::int16_t version) {
        patch::RunSteps(Steps(), Procedures(), version);
        return true;
    });
}

}  // namespace tavrel::modDBPatch_NORB
