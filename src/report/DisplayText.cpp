#include "report/DisplayText.h"

#include <algorithm>
#include <iterator>

#include "text/Utf.h"

namespace tavrel::report {

namespace {

struct Range {
    char32_t first, last;
};

// Both tables are ascending.
constexpr Range kNoColumn[] = {{0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x0610, 0x061A},
                               {0x064B, 0x065F}, {0x0E31, 0x0E31}, {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E},
                               {0x1160, 0x11FF}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F},
                               {0x202A, 0x202E}, {0x2060, 0x2064}, {0x20D0, 0x20F0}, {0xD7B0, 0xD7FF},
                               {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}, {0xE0100, 0xE01EF}};
constexpr Range kTwoColumns[] = {
    {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0x33FF},  {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},
    {0xA000, 0xA4CF},   {0xA960, 0xA97F},   {0xAC00, 0xD7A3},  {0xF900, 0xFAFF},   {0xFE10, 0xFE19},
    {0xFE30, 0xFE6F},   {0xFF01, 0xFF60},   {0xFFE0, 0xFFE6},  {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF},
    {0x1F900, 0x1F9FF}, {0x20000, 0x2FFFD}, {0x30000, 0x3FFFD}};

template <std::size_t N>
bool Among(const Range (&ranges)[N], char32_t codePoint) {
    const auto* after = std::upper_bound(std::begin(ranges), std::end(ranges), codePoint,
                                         [](char32_t c, const Range& range) { return c < range.first; });
    return after != std::begin(ranges) && codePoint <= std::prev(after)->last;
}

bool IsSurrogate(char32_t codePoint) {
    return codePoint >= 0xD800 && codePoint <= 0xDFFF;
}

/// Marks that turn the direction of writing: harmless in a name, misleading in a table.
bool TurnsDirection(char32_t codePoint) {
    return (codePoint >= 0x202A && codePoint <= 0x202E) || (codePoint >= 0x2066 && codePoint <= 0x2069);
}

char32_t Picture(char32_t codePoint) {
    if (codePoint < 0x20) {
        return 0x2400 + codePoint;
    }
    if (codePoint == 0x7F) {
        return 0x2421;
    }
    const bool hidden = (codePoint >= 0x80 && codePoint < 0xA0) || codePoint == 0x2028 || codePoint == 0x2029;
    return hidden || IsSurrogate(codePoint) || TurnsDirection(codePoint) ? 0xFFFD : codePoint;
}

}  // namespace

int ColumnsOf(char32_t codePoint) {
    if (codePoint < 0x300) {
        return 1;
    }
    if (Among(kNoColumn, codePoint)) {
        return 0;
    }
    return Among(kTwoColumns, codePoint) ? 2 : 1;
}

std::size_t DisplayWidth(std::string_view utf8) {
    std::size_t columns = 0;
    for (std::size_t at = 0; at < utf8.size();) {
        columns += static_cast<std::size_t>(ColumnsOf(text::NextCodePoint(utf8, at)));
    }
    return columns;
}

std::string PadRight(std::string_view utf8, std::size_t columns) {
    const std::size_t width = DisplayWidth(utf8);
    std::string padded(utf8);
    padded.append(columns > width ? columns - width : 0, ' ');
    return padded;
}

std::string Printable(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        text::AppendUtf8(out, Picture(text::NextCodePoint(utf8, at)));
    }
    return out;
}

std::string SoundUtf8(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        const char32_t codePoint = text::NextCodePoint(utf8, at);
        text::AppendUtf8(out, IsSurrogate(codePoint) ? 0xFFFD : codePoint);
    }
    return out;
}

}  // namespace tavrel::report
