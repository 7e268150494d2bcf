#include <vector>

#include <gtest/gtest.h>

#include "text/Utf.h"

namespace tavrel::text {
namespace {

struct Pair {
    const char* what;
    std::string utf8;
    std::u16string utf16;
};

const Pair kPairs[] = {
    {"empty", "", u""},
    {"ascii with a zero", std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
    {"borders of the lengths", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF", u"\x7F\x80\x7FF\x800\xFFFF"},
    {"Hangul", "고객", u"고객"},
    {"beyond the first plane", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
    {"high surrogate alone", "\xED\xA0\x80!", {0xD800, u'!'}},
    {"low before high", "\xED\xBF\xBF\xED\xA0\x80", {0xDFFF, 0xD800}},
};

TEST(Utf, BothWaysGiveBackWhatWentIn) {
    for (const Pair& pair : kPairs) {
        SCOPED_TRACE(pair.what);
        EXPECT_EQ(Utf8FromUtf16(pair.utf16), pair.utf8);
        EXPECT_EQ(Utf16FromUtf8(pair.utf8), pair.utf16);
        EXPECT_EQ(Utf16Length(pair.utf8), pair.utf16.size());
    }
}

TEST(Utf, EveryCodePointSurvives) {
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        std::string utf8;
        AppendUtf8(utf8, c);
        std::size_t at = 0;
        ASSERT_EQ(NextCodePoint(utf8, at), c);
        ASSERT_EQ(at, utf8.size());
        ASSERT_EQ(Utf8FromUtf16(Utf16FromUtf8(utf8)), utf8) << std::hex << static_cast<std::uint32_t>(c);
    }
}

TEST(Utf, EveryWrongByteBecomesOneReplacement) {
    struct Wrong {
        std::string utf8;
        std::u16string expected;
    };
    const Wrong cases[] = {
        {"\x80", u"\uFFFD"},                      // trailing byte first
        {"\xC0\xAF", u"\uFFFD\uFFFD"},            // longer than needed
        {"\xE0\x9F\xBF", u"\uFFFD\uFFFD\uFFFD"},  // the same in three bytes
        {"\xF0\x8F\xBF\xBF", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond U+10FFFF
        {"\xFF", u"\uFFFD"},
        {"\xEA\xB0", u"\uFFFD\uFFFD"},  // cut off
        {"\xEA!\xB0", u"\uFFFD!\uFFFD"},
    };
    for (const Wrong& wrong : cases) {
        EXPECT_EQ(Utf16FromUtf8(wrong.utf8), wrong.expected);
    }
}

TEST(Utf, LittleEndianBytesDropAnOddOne) {
    const std::vector<std::uint8_t> bytes = {0x00, 0xAC, 0x3D, 0xD8, 0x00, 0xDE, 0x41};
    EXPECT_EQ(Utf8FromUtf16Le(bytes), "가\xF0\x9F\x98\x80");
    EXPECT_EQ(Utf8FromUtf16Le(std::span(bytes).first(1)), "");
}

}  // namespace
}  // namespace tavrel::text
