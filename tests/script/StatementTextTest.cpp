// Names and defaults out of files that may hold anything.
#include <gtest/gtest.h>

#include "details/ColumnOrder.h"
#include "script/DefaultText.h"
#include "script/Names.h"

namespace tavrel::testing {
namespace {

TEST(StatementText, QuotesNamesWhereTheyMustBe) {
    const std::pair<const char*, const char*> names[] = {{"Customer_1", "Customer_1"},
                                                         {"고객", "고객"},
                                                         {"select", "[select]"},
                                                         {"Date", "[Date]"},
                                                         {"user", "[user]"},
                                                         {"1a", "[1a]"},
                                                         {"a b", "[a b]"},
                                                         {"a;b'\"", "[a;b'\"]"},
                                                         {"_a", "[_a]"},
                                                         {"전화·팩스", "[전화·팩스]"}};
    for (const auto& [name, quoted] : names) {
        ASSERT_TRUE(script::CanBeNamed(name)) << name;
        EXPECT_EQ(script::Quoted(name), quoted);
    }
    for (const char* name : {"", " a", "a.b", "a]", "[a", "a`", "a!", "a\nb", "\xED\xA0\x80"}) {
        EXPECT_FALSE(script::CanBeNamed(name)) << name;
    }
}

TEST(StatementText, WritesDefaultsThatMeanSomething) {
    const std::pair<const char*, const char*> defaults[] = {
        {"0", "0"},   {"\"a;b\"", "\"a;b\""}, {"'--'", "'--'"}, {"Now()", "Now()"}, {"=Now()", "Now()"},
        {"No", "No"}, {"1+1", "(1+1)"},       {" 0 ", "0"},     {"-1", "-1"}};
    for (const auto& [text, written] : defaults) {
        EXPECT_EQ(script::WritableDefault(text), written) << text;
    }
    for (const char* text :
         {"", "=", "0; DROP TABLE t", "0 NOT NULL", "NoSuch()", "1)", "\"a", "0) + (1", "0 --"}) {
        EXPECT_FALSE(script::WritableDefault(text)) << text;
    }
}

TEST(ColumnOrder, MovesAsFewAsCanBe) {
    using Places = std::vector<std::size_t>;
    EXPECT_EQ(details::Moved({}), Places{});
    EXPECT_EQ(details::Moved({0, 1, 2}), Places{});
    EXPECT_EQ(details::Moved({1, 2, 3, 0}), Places{3});
    EXPECT_EQ(details::Moved({3, 0, 1, 2}), Places{0});
    EXPECT_EQ(details::Moved({2, 1, 0}).size(), 2U);
}

}  // namespace
}  // namespace tavrel::testing
