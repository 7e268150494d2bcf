#include "report/TextTable.h"

#include <algorithm>

#include "grid/CellRoles.h"
#include "report/DisplayText.h"
#include "text/Utf.h"

namespace tavrel::report {

namespace {

constexpr std::string_view kGap = "  ";
constexpr std::string_view kReset = "\x1b[0m";
constexpr std::string_view kBold = "\x1b[1m";
/// The mark has no back of its own here: it is the terminal's red, in bold.
constexpr std::string_view kMark = "\x1b[1;31m";

/// The window's light back under black text.
std::string BackOf(grid::CellRole role) {
    const grid::Colour back = grid::ColoursOf(role).light.back;
    return "\x1b[30;48;2;" + std::to_string(grid::RedOf(back)) + ';' + std::to_string(grid::GreenOf(back)) +
           ';' + std::to_string(grid::BlueOf(back)) + 'm';
}

std::string SequenceOf(Paint paint) {
    switch (paint) {
        case Paint::None:
            break;
        case Paint::Caption:
            return std::string(kBold);
        case Paint::Different:
            return BackOf(grid::CellRole::Differs);
        case Paint::OneSided:
            return BackOf(grid::CellRole::OneSided);
        case Paint::Mark:
            return std::string(kMark);
    }
    return {};
}

std::string Cut(std::string_view utf8, std::size_t columns) {
    std::size_t used = 0;
    std::size_t at = 0;
    while (at < utf8.size()) {
        std::size_t next = at;
        used += static_cast<std::size_t>(ColumnsOf(text::NextCodePoint(utf8, next)));
        if (used + 1 > columns) {
            break;
        }
        at = next;
    }
    return std::string(utf8.substr(0, at)) + "…";
}

}  // namespace

std::string Painted(std::string_view text, Paint paint, const TextStyle& style) {
    if (!style.colours || paint == Paint::None) {
        return std::string(text);
    }
    return SequenceOf(paint).append(text).append(kReset);
}

std::string TextTable::Shown(std::string_view text) const {
    std::string shown = Printable(text);
    if (style_.widestCell != 0 && DisplayWidth(shown) > style_.widestCell) {
        shown = Cut(shown, style_.widestCell);
    }
    return shown;
}

void TextTable::Measure(std::span<const TextCell> row) {
    for (std::size_t column = 0; column < row.size(); ++column) {
        widths_[column] = std::max(widths_[column], DisplayWidth(Shown(row[column].text)));
    }
}

void TextTable::Write(std::ostream& out, std::span<const TextCell> row) const {
    std::size_t owedBlanks = 0;  // written only when something follows: no line ends in blanks
    for (std::size_t column = 0; column < row.size(); ++column) {
        const std::string shown = Shown(row[column].text);
        const bool painted = style_.colours && row[column].paint != Paint::None;
        const std::size_t padding = widths_[column] - DisplayWidth(shown);
        if (!shown.empty() || painted) {
            out << std::string(owedBlanks, ' ')
                << Painted(painted ? PadRight(shown, widths_[column]) : shown, row[column].paint, style_);
            owedBlanks = painted ? 0 : padding;
        } else {
            owedBlanks += padding;
        }
        owedBlanks += kGap.size();
    }
    out << '\n';
}

void TextTable::WriteRule(std::ostream& out) const {
    for (std::size_t column = 0; column < widths_.size(); ++column) {
        out << (column == 0 ? "" : kGap) << std::string(widths_[column], '-');
    }
    out << '\n';
}

}  // namespace tavrel::report
