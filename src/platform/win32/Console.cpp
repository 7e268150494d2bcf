#include "platform/Console.h"

#include <memory>

#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {
namespace {

constexpr int kDefaultWidth = 80;

HANDLE HandleOf(Stream stream) {
    return ::GetStdHandle(stream == Stream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
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
    ::SetConsoleOutputCP(CP_UTF8);
    // Colours come as escape sequences, which a console takes only when told so.
    DWORD mode = 0;
    if (::GetConsoleMode(HandleOf(Stream::Output), &mode)) {
        ::SetConsoleMode(HandleOf(Stream::Output), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
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

}  // namespace tavrel::platform
