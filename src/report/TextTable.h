// A table in plain text: columns aligned by what a terminal shows, colours when a person looks at it.
//
// Rows are handed in twice, first to be measured, then to be written, so that a long table needs no second
// copy.
#pragma once

#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::report {

/// How text reports are written.
struct TextStyle {
    bool colours = false;
    std::size_t widestCell = 0;  ///< longer cells are cut and end in "…"; 0: never
};

enum class Paint : std::uint8_t { None, Caption, Different, OneSided, Mark };

struct TextCell {
    std::string_view text;
    Paint paint = Paint::None;
};

class TextTable {
  public:
    TextTable(std::size_t columns, const TextStyle& style) : style_(style), widths_(columns, 0) {}

    /// REQUIRES: every row that will be written has been measured.
    void Measure(std::span<const TextCell> row);
    void Write(std::ostream& out, std::span<const TextCell> row) const;
    /// A line under the captions.
    void WriteRule(std::ostream& out) const;

  private:
    [[nodiscard]] std::string Shown(std::string_view text) const;

    TextStyle style_;
    std::vector<std::size_t> widths_;
};

/// The text in a colour, or as it is.
std::string Painted(std::string_view text, Paint paint, const TextStyle& style);

}  // namespace tavrel::report
