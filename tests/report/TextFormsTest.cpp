// The small forms that reports are made of: CSV fields, columns of a terminal, dates.
#include <array>
#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "report/CsvWriter.h"
#include "report/DisplayText.h"
#include "report/HtmlPage.h"
#include "report/TextTable.h"
#include "report/ValueText.h"

namespace tavrel::report {
namespace {

TEST(CsvWriter, QuotesOnlyWhatMustBe) {
    std::ostringstream out;
    CsvWriter csv(out);
    csv.Row({"plain", "가나", "a,b", "say \"hi\"", "two\r\nlines", " blank", ""});
    csv.QuotedField("");
    csv.Field("\xed\xa0\x80");  // half a character cannot be UTF-8
    csv.EndRow();
    EXPECT_EQ(out.str(),
              "plain,가나,\"a,b\",\"say \"\"hi\"\"\",\"two\r\nlines\",\" blank\",\r\n\"\",\xef\xbf\xbd\r\n");
}

TEST(DisplayText, CountsColumnsOfATerminal) {
    const std::pair<const char*, std::size_t> cases[] = {
        {"", 0},     {"abc", 3},
        {"가나", 4}, {"漢字", 4},
        {"ｱ", 1},    {"Ａ", 2},
        {"é", 1},    {"e\xcc\x81", 1},
        {"😀", 2},    {"\xe1\x84\x80\xe1\x85\xa1", 2} /* 가 in its parts */};
    for (const auto& [text, columns] : cases) {
        EXPECT_EQ(DisplayWidth(text), columns) << text;
    }
    EXPECT_EQ(PadRight("가", 4), "가  ");
    EXPECT_EQ(PadRight("가나다", 4), "가나다");
}

TEST(DisplayText, LeavesNothingThatCommandsATerminal) {
    EXPECT_EQ(Printable("a\x1b[2J\nb\x7f"), "a␛[2J␊b␡");
    EXPECT_EQ(Printable("x\xe2\x80\xae"
                        "y\xc2\x9bz"),
              "x\xef\xbf\xbdy\xef\xbf\xbdz");
}

TEST(TextTable, AlignsByWhatIsShown) {
    TextTable table(3, {});
    const std::array<TextCell, 3> rows[] = {
        {{{"테이블"}, {"P"}, {"필드"}}}, {{{"ab"}, {""}, {"c"}}}, {{{"ab"}, {"v"}, {""}}}};
    for (const auto& row : rows) {
        table.Measure(row);
    }
    std::ostringstream out;
    for (const auto& row : rows) {
        table.Write(out, row);
    }
    EXPECT_EQ(out.str(), "테이블  P  필드\nab         c\nab      v\n");
}

TEST(TextTable, CutsAndPaintsForATerminal) {
    TextTable table(1, {.colours = true, .widestCell = 5});
    const std::array<TextCell, 1> row = {{{"가나다라", Paint::Different}}};
    table.Measure(row);
    std::ostringstream out;
    table.Write(out, row);
    EXPECT_EQ(out.str(), "\x1b[30;48;2;255;0;0m가나…\x1b[0m\n");
}

TEST(HtmlText, IsHarmlessInElementsAndAttributes) {
    EXPECT_EQ(HtmlText("<script>alert('x')</script>"), "&lt;script&gt;alert(&#39;x&#39;)&lt;/script&gt;");
    EXPECT_EQ(HtmlText("\" onclick=\"&amp;"), "&quot; onclick=&quot;&amp;amp;");
}

TEST(DateText, CountsFromTheEndOf1899) {
    const std::pair<double, const char*> cases[] = {{0, "1899-12-30 00:00:00"},
                                                    {36526.75, "2000-01-01 18:00:00"},
                                                    {38412, "2005-03-01 00:00:00"},
                                                    {36585, "2000-02-29 00:00:00"},
                                                    {-1.25, "1899-12-29 06:00:00"},
                                                    {1.9999999, "1900-01-01 00:00:00"},
                                                    {2958465.5, "9999-12-31 12:00:00"},
                                                    {-657434, "0100-01-01 00:00:00"},
                                                    {2958466, "2958466.0"},
                                                    {1e300, "1e+300"},
                                                    {std::numeric_limits<double>::infinity(), "Infinity"}};
    for (const auto& [days, text] : cases) {
        EXPECT_EQ(DateText(days), text);
    }
    EXPECT_EQ(DateText(std::numeric_limits<double>::quiet_NaN()), "NaN");
}

}  // namespace
}  // namespace tavrel::report
