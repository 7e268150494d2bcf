#include "platform/OpenWithProgram.h"

#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {

/// ShellExecute in the form that takes every path, also those that the ANSI code page cannot write.
void OpenWithAssociatedProgram(const std::string& path) {
    ::ShellExecuteW(nullptr, L"Open", Wide(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

}  // namespace tavrel::platform
