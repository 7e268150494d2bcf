#ifdef _WIN32
#include <fstream>
#include <sstream>

#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"

namespace tavrel::testing {

namespace {

/// One word of a command line as the receiving program takes it apart again.
std::string Quoted(const std::string& argument) {
    std::string quoted = "\"";
    std::size_t backslashes = 0;
    for (const char c : argument) {
        if (c == '"') {
            quoted.append(backslashes + 1, '\\');
        }
        backslashes = c == '\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    return quoted.append(backslashes, '\\') + "\"";
}

/// An end of the program that the program under test gets.
class Inherited {
  public:
    Inherited(const std::string& path, DWORD access, DWORD disposition) {
        SECURITY_ATTRIBUTES inherited = {};
        inherited.nLength = sizeof inherited;
        inherited.bInheritHandle = TRUE;
        handle_ = ::CreateFileW(platform::Wide(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                &inherited, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    Inherited(const Inherited&) = delete;
    Inherited& operator=(const Inherited&) = delete;
    ~Inherited() { ::CloseHandle(handle_); }

    [[nodiscard]] HANDLE Get() const { return handle_; }
    [[nodiscard]] std::string Written() const {
        std::string text(::SetFilePointer(handle_, 0, nullptr, FILE_END), '\0');
        ::SetFilePointer(handle_, 0, nullptr, FILE_BEGIN);
        DWORD count = 0;
        ::ReadFile(handle_, text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
        return text.substr(0, count);
    }

  private:
    HANDLE handle_;
};

/// Sets the variables of "A=1 B=2" for as long as it lives.
class Variables {
  public:
    explicit Variables(const std::string& assignments) {
        std::istringstream words(assignments);
        for (std::string word; words >> word;) {
            const std::size_t equals = word.find('=');
            names_.push_back(platform::Wide(word.substr(0, equals)));
            ::SetEnvironmentVariableW(names_.back().c_str(), platform::Wide(word.substr(equals + 1)).c_str());
        }
    }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;
    ~Variables() {
        for (const std::wstring& name : names_) {
            ::SetEnvironmentVariableW(name.c_str(), nullptr);
        }
    }

  private:
    std::vector<std::wstring> names_;
};

}  // namespace

ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& environment, const std::string& input) {
    const TemporaryFolder folder;
    const Variables variables(environment);
    std::ofstream(folder.File("input"), std::ios::binary) << input;
    const Inherited standardInput(folder.File("input"), GENERIC_READ, OPEN_EXISTING);
    const Inherited output(folder.File("output"), GENERIC_READ | GENERIC_WRITE, CREATE_NEW);
    const Inherited errors(folder.File("errors"), GENERIC_READ | GENERIC_WRITE, CREATE_NEW);
    std::string line = Quoted(program);
    for (const std::string& argument : arguments) {
        line += " " + Quoted(argument);
    }
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = standardInput.Get();
    startup.hStdOutput = output.Get();
    startup.hStdError = errors.Get();
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessW(nullptr, platform::Wide(line).data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                          &startup, &process)) {
        return {};
    }
    ::WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    ::GetExitCodeProcess(process.hProcess, &code);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return {.exitCode = static_cast<int>(code), .output = output.Written(), .errors = errors.Written()};
}

std::string ProgramFolder() {
    return TAVREL_BIN_DIR;
}

ProgramResult RunCli(const std::vector<std::string>& arguments) {
    return RunProgram(ProgramFolder() + "/tavrel-cli.exe", arguments);
}

}  // namespace tavrel::testing
#endif
