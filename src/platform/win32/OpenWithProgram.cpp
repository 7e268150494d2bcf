#include "platform/OpenWithProgram.h"

#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {

/// ShellExecute in the form that takes every path, also those that the ANSI code page cannot write.
bool OpenWithAssociatedProgram(const std::string& path) {
    const HINSTANCE answer =
        ::ShellExecuteW(nullptr, L"Open", Wide(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(answer) != SE_ERR_NOASSOC;
}

}  // namespace tavrel::platform
