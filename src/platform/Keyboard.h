// Keys, one by one, from the terminal that a person types on.
#pragma once

#include <cstdint>
#include <memory>

namespace tavrel::platform {

enum class KeyKind : std::uint8_t {
    Character,  ///< printable, in Key::character
    Enter,
    Backspace,
    Delete,
    Left,
    Right,
    Up,
    Down,
    Home,
    End,
    EraseLine,   ///< Ctrl+U
    Cancel,      ///< Ctrl+C
    EndOfInput,  ///< Ctrl+D
    Gone,        ///< nothing more can be read
    Other
};

struct Key {
    KeyKind kind = KeyKind::Other;
    char32_t character = 0;
};

/// While it lives the terminal neither shows what is typed nor waits for whole lines.
class Keyboard {
  public:
    virtual ~Keyboard() = default;
    /// Waits for a key.
    virtual Key Read() = 0;
};

/// True when standard input is a terminal.
bool HasKeyboard();

/// Null when standard input is no terminal.
std::unique_ptr<Keyboard> OpenKeyboard();

}  // namespace tavrel::platform
