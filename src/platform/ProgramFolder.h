// Where the running program lies.
#pragma once

#include <string>

namespace tavrel::platform {

/// The running executable in full.  Throws Error when the system does not tell.
std::string ProgramPath();

/// The folder of the running executable, without a separator at its end.  Throws Error.
std::string ProgramFolder();

/// The program's folder when files can be made in it; otherwise (a program installed for all users) the
/// folder of this user's state, which is made when it is missing.  Throws Error.
std::string WritableProgramFolder();

}  // namespace tavrel::platform
