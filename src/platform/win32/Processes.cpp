#include "platform/Processes.h"

#include "platform/AnsiText.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {
namespace {

/// Keeps the process's handle in the record, so that it can be waited for; and a file that is missing or no
/// program opens no box of the shell's, which would hold the start up.
constexpr ULONG kKeepHandleAndSilence = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
constexpr std::int32_t kNoProgram = 5;

/// A path with blanks is one word of a command line only between quotation marks.
std::wstring Word(const std::wstring& path) {
    return path.find(L' ') == std::wstring::npos ? path : L"\"" + path + L"\"";
}

void StartCommandLine(std::wstring line, ShowCommand show, const std::string& program) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = static_cast<WORD>(show);
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process)) {
        if (::GetLastError() == ERROR_BAD_EXE_FORMAT) {
            throw MakeError(kNoProgram, {}, program + ": 실행 파일이 아님");
        }
        throw LastSystemError(program);
    }
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
}

}  // namespace

void ShellExecuteAndWait(const ShellExecution& execution) {
    const std::string verb = AnsiText(execution.verb);
    const std::string file = AnsiText(execution.file);
    const std::string parameters = AnsiText(execution.parameters);
    const std::string directory = AnsiText(execution.directory);
    SHELLEXECUTEINFOA record = {};
    record.cbSize = sizeof record;
    record.fMask = kKeepHandleAndSilence;
    record.hwnd = reinterpret_cast<HWND>(execution.ownerWindow);
    record.lpVerb = verb.c_str();
    record.lpFile = file.c_str();
    record.lpParameters = parameters.c_str();
    record.lpDirectory = directory.empty() ? nullptr : directory.c_str();
    record.nShow = static_cast<int>(execution.show);
    ::ShellExecuteExA(&record);
    // Where nothing was started the handle is 0, and the wait on it returns at once.
    ::WaitForSingleObject(record.hProcess, INFINITE);
    if (record.hProcess != nullptr) {
        ::CloseHandle(record.hProcess);
    }
}

void StartProgram(const std::string& program, const std::string& argument, ShowCommand show) {
    StartCommandLine(Word(Wide(program)) + L" " + Wide(argument), show, program);
}

void ShowFolder(const std::string& folder) {
    StartProgram("explorer.exe", folder, ShowCommand::NormalWithFocus);
}

}  // namespace tavrel::platform
