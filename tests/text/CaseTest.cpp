#include <gtest/gtest.h>

#include "text/Case.h"

namespace tavrel::text {
namespace {

struct Forms {
    const char* text;
    const char* upper;
    const char* lower;
};

// The forms as the Unicode character database and its special casing give them.
const Forms kForms[] = {
    {"Table_1 고객", "TABLE_1 고객", "table_1 고객"},
    {"@Z[`z{", "@Z[`Z{", "@z[`z{"},
    {"straße ŉ ﬁ", "STRAßE ŉ ﬁ", "straße ŉ ﬁ"},  // no single upper character: unchanged
    {"ıiİI", "IIİI", "ıii̇i"},
    {"ÿ µ ſ", "Ÿ Μ S", "ÿ µ ſ"},
    {"ǅ ǆ Ǆ", "Ǆ Ǆ Ǆ", "ǆ ǆ ǆ"},
    {"ᾀ ᾳ ᾈ", "ᾈ ᾼ ᾈ", "ᾀ ᾳ ᾀ"},
    {"ა Ა Ა", "Ა Ა Ა", "ა ა ა"},
    {"ａ Ａ ⅷ Ⓩ", "Ａ Ａ Ⅷ Ⓩ", "ａ ａ ⅷ ⓩ"},
    {"𐐨 𐐀 𞤢", "𐐀 𐐀 𞤀", "𐐨 𐐨 𞤢"},
    {"\xED\xA0\x80x", "\xED\xA0\x80X", "\xED\xA0\x80x"},
};

TEST(Case, UpperAndLowerForms) {
    for (const Forms& forms : kForms) {
        EXPECT_EQ(Upper(forms.text), forms.upper);
        EXPECT_EQ(Lower(forms.text), forms.lower);
        EXPECT_TRUE(EqualIgnoringCase(forms.text, forms.upper));
    }
}

TEST(Case, SigmaIsFinalAfterALetterAndBeforeNone) {
    const struct {
        const char* text;
        const char* lower;
    } cases[] = {
        {"Σ", "σ"},       {"ΑΣ", "ας"},       {"ΑΣΑ", "ασα"}, {"Α.Σ", "α.ς"},
        {"ΑΣ.Α", "ασ.α"}, {"ΑΣ. Α", "ας. α"}, {"1Σ", "1σ"},   {"ΑΣ고", "ας고"},
        {"고Σ", "고σ"},   {"ΑΣΣ", "ασς"},     {".Σ", ".σ"},   {"Α\u0301Σ", "α\u0301ς"},
    };
    for (const auto& sigma : cases) {
        EXPECT_EQ(Lower(sigma.text), sigma.lower) << sigma.text;
    }
}

TEST(Case, EqualityNeedsTheSameCharacters) {
    EXPECT_FALSE(EqualIgnoringCase("abc", "abcd"));
    EXPECT_FALSE(EqualIgnoringCase("abcd", "abc"));
    EXPECT_FALSE(EqualIgnoringCase("a", "á"));
    EXPECT_FALSE(EqualIgnoringCase("고객", "고각"));
    EXPECT_TRUE(EqualIgnoringCase("", ""));
}

TEST(Case, NamesOrderByLowerCaseThenByThemselves) {
    const char* ordered[] = {"", "A_b", "AB", "Ab", "aB", "abc", "b", "Z", "Ä", "가", "나", "𐐀"};
    for (std::size_t i = 0; i < std::size(ordered); ++i) {
        for (std::size_t j = 0; j < std::size(ordered); ++j) {
            EXPECT_EQ(NameLess(ordered[i], ordered[j]), i < j) << ordered[i] << " < " << ordered[j];
        }
    }
}

}  // namespace
}  // namespace tavrel::text
