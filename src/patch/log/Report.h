// How the procedures of the patch modules report an error that they trap.
#pragma once

#include <string_view>

#include "db/SessionHooks.h"
#include "text/ProcedureError.h"

namespace tavrel::patch {

/// The modules that the messages name.  They are not those in which the procedures stand today.
inline constexpr std::string_view kPatchModule = "Module modMain_dbPatch";
inline constexpr std::string_view kUpdateModule = "Module FrmDBUpdate";

/// "Error … in procedure … of Module …", an OK button and no icon.
inline void ReportFailure(const Error& error, std::string_view procedure, std::string_view place) {
    modDBsub::ShowMessage({.text = ProcedureErrorText(error, procedure, place)});
}

}  // namespace tavrel::patch
