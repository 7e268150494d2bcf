#include "platform/Console.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace tavrel::platform {
namespace {

constexpr int kDefaultWidth = 80;

}  // namespace

bool IsTerminal(Stream stream) {
    return ::isatty(stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO) != 0;
}

int TerminalWidth() {
    for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
        winsize size = {};
        if (::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
            return size.ws_col;
        }
    }
    return kDefaultWidth;
}

std::vector<std::string> CommandLine(int argc, char** argv) {
    return {argv, argv + argc};
}

void PassBytesUnchanged() {}

std::optional<std::string> Utf8FromConsole(std::string_view /*bytes*/) {
    return std::nullopt;
}

}  // namespace tavrel::platform
