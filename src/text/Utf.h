// Between UTF-8, which is in memory, and UTF-16, which is in the files and in lengths that users see.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tavrel::text {

/// UTF-16LE bytes to UTF-8.  Surrogate pairs become four bytes; a surrogate without partner keeps its own
/// three-byte form (ED A0..BF xx), so that nothing is lost on the way back.  A last odd byte is ignored.
std::string Utf8FromUtf16Le(std::span<const std::uint8_t> bytes);

std::string Utf8FromUtf16(std::u16string_view units);

/// The way back; bytes that are no UTF-8 (nor a three-byte surrogate) become U+FFFD, one for each byte.
std::u16string Utf16FromUtf8(std::string_view utf8);

/// Number of UTF-16 units of a text: what LEN and VARCHAR(n) count.
std::size_t Utf16Length(std::string_view utf8);

/// Appends one code point (surrogates allowed) as UTF-8.
void AppendUtf8(std::string& out, char32_t codePoint);

/// Takes the code point that starts at `at` and moves `at` behind it.  REQUIRES: at < utf8.size().
char32_t NextCodePoint(std::string_view utf8, std::size_t& at);

}  // namespace tavrel::text
