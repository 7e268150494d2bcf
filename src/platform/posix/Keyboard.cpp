#include "platform/Keyboard.h"

#include <cerrno>
#include <optional>
#include <poll.h>
#include <string>
#include <string_view>
#include <termios.h>
#include <unistd.h>

#include "text/Utf.h"

namespace tavrel::platform {
namespace {

constexpr char kEscape = '\x1b';

struct ControlKey {
    char byte;
    KeyKind kind;
};
constexpr ControlKey kControlKeys[] = {
    {'\r', KeyKind::Enter},       {'\n', KeyKind::Enter},    {'\x7f', KeyKind::Backspace},
    {'\b', KeyKind::Backspace},   {'\x01', KeyKind::Home},   {'\x05', KeyKind::End},
    {'\x15', KeyKind::EraseLine}, {'\x03', KeyKind::Cancel}, {'\x04', KeyKind::EndOfInput},
    {'\x02', KeyKind::Left},      {'\x06', KeyKind::Right},  {'\x10', KeyKind::Up},
    {'\x0e', KeyKind::Down},
};

struct Sequence {
    std::string_view tail;  ///< behind ESC [ or ESC O
    KeyKind kind;
};
constexpr Sequence kSequences[] = {
    {"A", KeyKind::Up},    {"B", KeyKind::Down}, {"C", KeyKind::Right},   {"D", KeyKind::Left},
    {"H", KeyKind::Home},  {"F", KeyKind::End},  {"1~", KeyKind::Home},   {"4~", KeyKind::End},
    {"7~", KeyKind::Home}, {"8~", KeyKind::End}, {"3~", KeyKind::Delete},
};

class TerminalKeyboard : public Keyboard {
  public:
    explicit TerminalKeyboard(const termios& before) : before_(before) {
        termios raw = before;
        raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG | IEXTEN);
        raw.c_iflag &= ~static_cast<tcflag_t>(ICRNL | IXON);
        raw.c_cc[VMIN] = 1;
        raw.c_cc[VTIME] = 0;
        ::tcsetattr(STDIN_FILENO, TCSADRAIN, &raw);
    }
    ~TerminalKeyboard() override { ::tcsetattr(STDIN_FILENO, TCSADRAIN, &before_); }

    Key Read() override {
        const std::optional<char> byte = ReadByte();
        if (!byte) {
            return {.kind = KeyKind::Gone};
        }
        if (*byte == kEscape) {
            return {.kind = ReadSequence()};
        }
        for (const ControlKey& key : kControlKeys) {
            if (key.byte == *byte) {
                return {.kind = key.kind};
            }
        }
        const bool control = static_cast<unsigned char>(*byte) < ' ';
        return control ? Key{} : ReadCharacter(*byte);
    }

  private:
    /// Bytes are taken one by one: what was typed ahead stays with the terminal.
    static std::optional<char> ReadByte() {
        char byte = 0;
        ssize_t count = 0;
        do {
            count = ::read(STDIN_FILENO, &byte, 1);
        } while (count < 0 && errno == EINTR);
        return count == 1 ? std::optional(byte) : std::nullopt;
    }

    /// The bytes of a sequence follow at once; a person is slower.
    static std::optional<char> ReadByteAtOnce() {
        constexpr int kMilliseconds = 50;
        pollfd waiting{STDIN_FILENO, POLLIN, 0};
        return ::poll(&waiting, 1, kMilliseconds) == 1 ? ReadByte() : std::nullopt;
    }

    static KeyKind ReadSequence() {
        constexpr std::size_t kLongest = 16;
        const std::optional<char> introducer = ReadByteAtOnce();
        if (!introducer || (*introducer != '[' && *introducer != 'O')) {
            return KeyKind::Other;
        }
        std::string tail;
        while (tail.size() < kLongest) {
            const std::optional<char> byte = ReadByteAtOnce();
            if (!byte) {
                return KeyKind::Other;
            }
            tail += *byte;
            if (*byte >= '@' && *byte <= '~') {
                break;
            }
        }
        for (const Sequence& sequence : kSequences) {
            if (sequence.tail == tail) {
                return sequence.kind;
            }
        }
        return KeyKind::Other;
    }

    static Key ReadCharacter(char first) {
        const auto lead = static_cast<unsigned char>(first);
        const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
        std::string bytes(1, first);
        for (int i = 0; i < more; ++i) {
            const std::optional<char> byte = ReadByteAtOnce();
            if (!byte) {
                break;
            }
            bytes += *byte;
        }
        std::size_t at = 0;
        return {.kind = KeyKind::Character, .character = text::NextCodePoint(bytes, at)};
    }

    termios before_;
};

}  // namespace

bool HasKeyboard() {
    return ::isatty(STDIN_FILENO) != 0;
}

std::unique_ptr<Keyboard> OpenKeyboard() {
    termios before = {};
    if (::tcgetattr(STDIN_FILENO, &before) != 0) {
        return nullptr;
    }
    return std::make_unique<TerminalKeyboard>(before);
}

}  // namespace tavrel::platform
