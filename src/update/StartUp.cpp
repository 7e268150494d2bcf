#include "update/StartUp.h"

#include "text/ProcedureError.h"
#include "update/Launcher.h"
#include "update/RunningProgram.h"

namespace tavrel::update {

bool RunStartUpUpdate(platform::MessageBox& messages) {
    bool goesOn = true;
    try {
        modAutoUpdateV1_Launcher::RunAutoUpdate(false, ThisProgram(), messages, [&] { goesOn = false; });
    } catch (const Error& error) {
        messages.Say(ProcedureErrorText(error, "RunAutoUpdate", "Module modAutoUpdateV1_Launcher"));
    }
    return goesOn;
}

}  // namespace tavrel::update
