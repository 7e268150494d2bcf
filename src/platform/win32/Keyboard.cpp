#include "platform/Keyboard.h"

#include "platform/win32/Windows.h"

namespace tavrel::platform {
namespace {

struct VirtualKey {
    WORD code;
    KeyKind kind;
};
constexpr VirtualKey kVirtualKeys[] = {
    {VK_RETURN, KeyKind::Enter}, {VK_BACK, KeyKind::Backspace}, {VK_DELETE, KeyKind::Delete},
    {VK_LEFT, KeyKind::Left},    {VK_RIGHT, KeyKind::Right},    {VK_UP, KeyKind::Up},
    {VK_DOWN, KeyKind::Down},    {VK_HOME, KeyKind::Home},      {VK_END, KeyKind::End},
};

struct ControlKey {
    wchar_t character;
    KeyKind kind;
};
constexpr ControlKey kControlKeys[] = {
    {L'\x15', KeyKind::EraseLine},
    {L'\x03', KeyKind::Cancel},
    {L'\x04', KeyKind::EndOfInput},
    {L'\x1a', KeyKind::EndOfInput},
};

class ConsoleKeyboard : public Keyboard {
  public:
    ConsoleKeyboard(HANDLE console, DWORD before) : console_(console), before_(before) {
        ::SetConsoleMode(console_, before_ & ~static_cast<DWORD>(ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT |
                                                                 ENABLE_PROCESSED_INPUT));
    }
    ~ConsoleKeyboard() override { ::SetConsoleMode(console_, before_); }

    Key Read() override {
        for (;;) {
            INPUT_RECORD record = {};
            DWORD count = 0;
            if (!::ReadConsoleInputW(console_, &record, 1, &count) || count == 0) {
                return {KeyKind::Gone, 0};
            }
            if (record.EventType == KEY_EVENT && record.Event.KeyEvent.bKeyDown) {
                const Key key = KeyOf(record.Event.KeyEvent);
                if (key.kind != KeyKind::Other) {
                    return key;
                }
            }
        }
    }

  private:
    Key KeyOf(const KEY_EVENT_RECORD& event) {
        for (const VirtualKey& key : kVirtualKeys) {
            if (key.code == event.wVirtualKeyCode) {
                return {key.kind, 0};
            }
        }
        const wchar_t unit = event.uChar.UnicodeChar;
        for (const ControlKey& key : kControlKeys) {
            if (key.character == unit) {
                return {key.kind, 0};
            }
        }
        return unit < L' ' ? Key{} : CharacterOf(unit);
    }

    /// Characters beyond the first plane come as two events.
    Key CharacterOf(wchar_t unit) {
        if (IS_HIGH_SURROGATE(unit)) {
            high_ = unit;
            return {};
        }
        char32_t character = unit;
        if (IS_LOW_SURROGATE(unit)) {
            character = 0x10000 + ((static_cast<char32_t>(high_) - 0xD800) << 10) +
                        (static_cast<char32_t>(unit) - 0xDC00);
        }
        return {KeyKind::Character, character};
    }

    HANDLE console_;
    DWORD before_;
    wchar_t high_ = 0xD800;
};

HANDLE Input() {
    return ::GetStdHandle(STD_INPUT_HANDLE);
}

}  // namespace

bool HasKeyboard() {
    DWORD mode = 0;
    return ::GetConsoleMode(Input(), &mode) != 0;
}

std::unique_ptr<Keyboard> OpenKeyboard() {
    DWORD mode = 0;
    if (!::GetConsoleMode(Input(), &mode)) {
        return nullptr;
    }
    return std::make_unique<ConsoleKeyboard>(Input(), mode);
}

}  // namespace tavrel::platform
