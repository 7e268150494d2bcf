// Texts as a terminal shows them: Hangul, Kanji and the like take two columns, combining marks none.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::report {

/// Columns that one character takes: 0, 1 or 2.
int ColumnsOf(char32_t codePoint);

/// Columns that a text takes on a terminal.
std::size_t DisplayWidth(std::string_view utf8);

/// The text and as many blanks as it needs to take `columns`; longer texts stay whole.
std::string PadRight(std::string_view utf8, std::size_t columns);

/// One line, safe for a terminal: control characters and line breaks show as their pictures (U+2400 on), so
/// that a name out of a database can neither break the table nor command the terminal.
std::string Printable(std::string_view utf8);

/// What some programs write in front of UTF-8, and others need to take it for UTF-8.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Sound UTF-8: what is none, surrogates without partner included, becomes U+FFFD.
std::string SoundUtf8(std::string_view utf8);

}  // namespace tavrel::report
