// A line typed by a person: moving, erasing, and the lines typed before.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Keyboard.h"

namespace tavrel::cli {

struct TypedLine {
    enum class Outcome : std::uint8_t { Entered, Cancelled, EndOfInput };
    Outcome outcome = Outcome::EndOfInput;
    std::string text;  ///< when entered
};

class LineEditor {
  public:
    /// Keeps a reference to `out`, which must be a terminal.
    explicit LineEditor(std::ostream& out) : out_(out) {}

    /// Shows the prompt and reads a line; the terminal is as before afterwards.
    TypedLine ReadLine(std::string_view prompt);
    /// What the arrow keys bring back.  Empty texts and a repetition of the latest are left out.
    void Remember(const std::string& text);

  private:
    /// True when the key ends the line.
    bool Take(const platform::Key& key, TypedLine& line);
    void Edit(const platform::Key& key);
    void Erase(std::size_t at);
    /// Shows the line typed `place` in the history; behind the last is the one being typed.
    void ShowRemembered(std::size_t place);
    void Draw() const;
    [[nodiscard]] std::string Text() const;

    std::ostream& out_;
    std::vector<std::string> history_;

    // The line being typed
    std::string prompt_;
    std::u32string typed_;
    std::size_t cursor_ = 0;
    std::size_t place_ = 0;   ///< in the history
    std::u32string started_;  ///< what was typed before looking back
};

}  // namespace tavrel::cli
