#include "platform/Console.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <iterator>
#include <memory>

#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {
namespace {

constexpr int kDefaultWidth = 80;

HANDLE HandleOf(Stream stream) {
    return ::GetStdHandle(stream == Stream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

/// The console as this program found it.  It outlives the program, so the next one gets it back as it was.
class ConsoleState {
  public:
    ConsoleState() : codePage_(::GetConsoleOutputCP()) {
        ::SetConsoleOutputCP(CP_UTF8);
        for (std::size_t i = 0; i < std::size(kStreams); ++i) {
            DWORD mode = 0;
            hasMode_[i] = ::GetConsoleMode(HandleOf(kStreams[i]), &mode) != 0;
            modes_[i] = mode;
        }
        for (std::size_t i = 0; i < std::size(kStreams); ++i) {
            // Colours come as escape sequences, which a console takes only when told so.
            if (hasMode_[i]) {
                ::SetConsoleMode(HandleOf(kStreams[i]), modes_[i] | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
            }
        }
        ::SetConsoleCtrlHandler(&OnInterrupt, TRUE);
    }
    ConsoleState(const ConsoleState&) = delete;
    ConsoleState& operator=(const ConsoleState&) = delete;
    ~ConsoleState() { Restore(); }

    void Restore() const {
        for (std::size_t i = 0; i < std::size(kStreams); ++i) {
            if (hasMode_[i]) {
                ::SetConsoleMode(HandleOf(kStreams[i]), modes_[i]);
            }
        }
        if (codePage_ != 0) {
            ::SetConsoleOutputCP(codePage_);
        }
    }

  private:
    static constexpr Stream kStreams[] = {Stream::Output, Stream::Error};

    /// Ctrl+C ends the program without its destructors; ending it stays the system's affair.
    static BOOL WINAPI OnInterrupt(DWORD event);

    UINT codePage_;
    bool hasMode_[std::size(kStreams)] = {};
    DWORD modes_[std::size(kStreams)] = {};
};

const ConsoleState& TakeConsole() {
    static const ConsoleState state;
    return state;
}

BOOL WINAPI ConsoleState::OnInterrupt(DWORD /*event*/) {
    TakeConsole().Restore();
    return FALSE;
}

struct LocalMemory {
    void operator()(LPWSTR* memory) const { ::LocalFree(memory); }
};

}  // namespace

bool IsTerminal(Stream stream) {
    DWORD mode = 0;
    return ::GetConsoleMode(HandleOf(stream), &mode) != 0;
}

int TerminalWidth() {
    for (const Stream stream : {Stream::Output, Stream::Error}) {
        CONSOLE_SCREEN_BUFFER_INFO info = {};
        if (::GetConsoleScreenBufferInfo(HandleOf(stream), &info)) {
            return info.srWindow.Right - info.srWindow.Left + 1;
        }
    }
    return kDefaultWidth;
}

std::vector<std::string> CommandLine(int argc, char** argv) {
    TakeConsole();
    int count = 0;
    const std::unique_ptr<LPWSTR[], LocalMemory> words(::CommandLineToArgvW(::GetCommandLineW(), &count));
    if (!words) {
        return {argv, argv + argc};
    }
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i) {
        arguments.push_back(Narrow(words[static_cast<std::size_t>(i)]));
    }
    return arguments;
}

void PassBytesUnchanged() {
    ::_setmode(::_fileno(stdin), _O_BINARY);
    ::_setmode(::_fileno(stdout), _O_BINARY);
}

std::optional<std::string> Utf8FromConsole(std::string_view bytes) {
    const UINT ofConsole = ::GetConsoleCP();
    const UINT codePage = ofConsole != 0 ? ofConsole : ::GetOEMCP();
    const int size = static_cast<int>(bytes.size());
    std::wstring wide(bytes.size(), L'\0');  // never more units than bytes
    const int length =
        ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), size, wide.data(), size);
    if (length == 0) {
        return std::nullopt;
    }
    wide.resize(static_cast<std::size_t>(length));
    return Narrow(wide);
}

}  // namespace tavrel::platform
