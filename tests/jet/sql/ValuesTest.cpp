// Texts as numbers and dates, order of texts, patterns.
#include <random>

#include <gmock/gmock.h>

#include "jet/index/KeyEncoder.h"
#include "jet/sql/expression/LikePattern.h"
#include "jet/sql/values/Dates.h"
#include "jet/sql/values/NumberText.h"
#include "jet/sql/values/TextComparer.h"
#include "jet/sql/values/Values.h"
#include "text/Utf.h"

namespace tavrel::test {
namespace {

using namespace jet::sql;
using jet::ByteVector;

TEST(NumberText, ReadsWhatTheLocaleCallsANumber) {
    const std::pair<const char*, double> numbers[] = {
        {"1", 1},
        {" 12 ", 12},
        {"0099", 99},
        {"-5", -5},
        {"5-", -5},
        {"+5", 5},
        {"1,234.5", 1234.5},
        {"1,2,3", 123},
        {".5", .5},
        {"5.", 5},
        {"1E05", 1e5},
        {"1D10", 1e10},
        {"1e-2", .01},
        {"(7)", -7},
        {"₩1,000", 1000},
        {"\\3", 3},
        {"&H1F", 31},
        {"&O17", 15},
        {"&HFFFFFFFF", -1},
        {"-₩2", -2},
        {"00000000000000000000000000000001", 1},
    };
    for (const auto& [text, number] : numbers) {
        const auto read = ReadNumber(text);
        ASSERT_TRUE(read.has_value()) << text;
        EXPECT_EQ(jet::sql::DoubleOf(*read), number) << text;
    }
    for (const char* text :
         {"",   "  ", "abc", "1x",         "1.2.3", "--1", "-1-", "1 2", ",1",   "1E",    "E5", "(1",
          "1)", "&H", "&HG", "2024-01-02", "12:30", "₩₩1", "₩",   ".",   "True", "1E5.5", "가"}) {
        EXPECT_FALSE(ReadNumber(text).has_value()) << text;
    }
}

TEST(NumberText, WritesNumbersShortest) {
    const std::pair<double, const char*> numbers[] = {
        {0, "0"},           {-0.0, "0"},        {1.5, "1.5"},
        {0.1 + 0.2, "0.3"}, {1e15, "1E+15"},    {123456789012345, "123456789012345"},
        {1e-5, "1E-05"},    {0.0001, "0.0001"}, {-2, "-2"}};
    for (const auto& [number, text] : numbers) {
        EXPECT_EQ(DoubleText(number), text);
    }
    EXPECT_EQ(CurrencyText({125000}), "12.5");
    EXPECT_EQ(SingleText(0.1F), "0.1");
}

TEST(Dates, ReadAndWritten) {
    struct Case {
        const char* text;
        DateOrder order;
        const char* expected;  ///< empty: no date
    };
    const Case cases[] = {
        {"2024-02-29 13:05:07", DateOrder::YearFirst, "2024-02-29 13:05:07"},
        {"1900-01-01 00:00:00", DateOrder::YearFirst, "1900-01-01"},
        {"1/2/2024", DateOrder::MonthFirst, "2024-01-02"},
        {"13/2/2024", DateOrder::MonthFirst, "2024-02-13"},
        {"24/1/2", DateOrder::YearFirst, "2024-01-02"},
        {"1/2/99", DateOrder::MonthFirst, "1999-01-02"},
        {"2024/1/2 오후 3:04", DateOrder::YearFirst, "2024-01-02 15:04:00"},
        {"12:30 AM", DateOrder::MonthFirst, "00:30:00"},
        {"0100-01-01", DateOrder::YearFirst, "0100-01-01"},
        {"1899-12-29 06:00:00", DateOrder::YearFirst, "1899-12-29 06:00:00"},
        {"0000-00-00", DateOrder::YearFirst, ""},
        {"2023-02-29", DateOrder::YearFirst, ""},
        {"2024-01-02 25:00", DateOrder::YearFirst, ""},
        {"2024-01", DateOrder::YearFirst, ""},
        {"2024-01-02-", DateOrder::YearFirst, ""},
        {"13:00 PM", DateOrder::YearFirst, ""},
        {"", DateOrder::YearFirst, ""},
        {"12", DateOrder::YearFirst, ""},
        {"-1-2-2024", DateOrder::YearFirst, ""},
    };
    for (const Case& each : cases) {
        const auto date = ParseDateText(each.text, each.order);
        EXPECT_EQ(date ? DateText(*date) : "", each.expected) << each.text;
    }
    EXPECT_EQ(ParseDateText("1899-12-31", DateOrder::YearFirst)->days, 1);
    EXPECT_EQ(ParseDateText("1899-12-29 06:00", DateOrder::YearFirst)->days, -1.25);
    for (int day = -657434; day <= 2958465; day += 37) {
        ASSERT_EQ(DateOf(PartsOf({static_cast<double>(day)}))->days, day);
    }
}

TEST(Like, MatchesWithoutLetterCase) {
    struct Case {
        const char *text, *pattern;
        bool matches;
    };
    const Case cases[] = {
        {"abc", "A%", true},          {"abc", "%C", true},      {"abc", "_b_", true},
        {"abc", "a_", false},         {"", "%", true},          {"", "_", false},
        {"a%c", "a[%]c", true},       {"abc", "a[%]c", false},  {"b", "[a-c]", true},
        {"d", "[a-c]", false},        {"d", "[!a-c]", true},    {"-", "[a-]", true},
        {"매출원장", "매_원%", true}, {"aXbXc", "%x%x%", true}, {"aXb", "%x%x%", false},
        {"a[", "a[", true},           {"abab", "%ab", true},    {"ab ", "ab", false},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(LikePattern(each.pattern).Matches(each.text), each.matches)
            << each.text << " LIKE " << each.pattern;
    }
    std::string runs;
    for (int i = 0; i < 30; ++i) {
        runs += "%a";
    }
    EXPECT_FALSE(LikePattern(runs + "b").Matches(std::string(5000, 'a')));  // does not take forever
}

/// Texts of few characters, so that equal fronts are common: letters, marks, blanks, Hangul, unknown ones.
std::string RandomText(std::mt19937& random) {
    static const std::vector<std::string> kCharacters = {"a",  "A",  "b",  " ", "-", "é", "1", "가",
                                                         "나", "ㄱ", "漢", "z", "😀", "l", "j"};
    std::string text;
    for (std::size_t i = random() % 6; i > 0; --i) {
        text += kCharacters[random() % kCharacters.size()];
    }
    return text;
}

TEST(TextComparer, OrdersLikeItsKeysInEverySortOrder) {
    std::mt19937 random(7);
    for (const std::uint16_t sortOrder : {0x0412, 0x0409, 0x041A, 0x9999}) {
        const TextComparer texts(sortOrder);
        for (int i = 0; i < 20000; ++i) {
            const std::string a = RandomText(random);
            const std::string b = RandomText(random);
            ByteVector keyA;
            ByteVector keyB;
            texts.AppendKey(a, keyA);
            texts.AppendKey(b, keyB);
            const int expected = keyA < keyB ? -1 : keyA == keyB ? 0 : 1;
            ASSERT_EQ(texts.Compare(a, b), expected) << a << " / " << b << " in " << sortOrder;
            ASSERT_EQ(texts.Equal(a, b), expected == 0);
            if (const auto key = jet::EncodeTextKey(text::Utf16FromUtf8(a), sortOrder)) {
                ASSERT_EQ(keyA, *key) << a;
            }
        }
    }
}

TEST(TextComparer, IgnoresCaseAndTrailingBlanksOnly) {
    const TextComparer texts(0x0412);
    EXPECT_TRUE(texts.Equal("Abc  ", "aBC"));
    EXPECT_TRUE(texts.Equal("", "  "));
    EXPECT_FALSE(texts.Equal("a b", "ab"));
    EXPECT_FALSE(texts.Equal("e", "é"));
    EXPECT_LT(texts.Compare("9", "가"), 0);
    EXPECT_LT(texts.Compare("힣", "a"), 0);
    EXPECT_LT(texts.Compare("z", "漢"), 0);
}

}  // namespace
}  // namespace tavrel::test
