#include <sstream>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "grid/ResultGrid.h"
#include "report/ComparisonReport.h"
#include "report/HtmlReport.h"

namespace tavrel::report {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kHostile[] = "<script>alert(\"x\")</script>";

/// A comparison put together by hand: cells and marks as the run leaves them.
class HandMade {
  public:
    HandMade() {
        grid_.PutText(1, grid::kTopHeaderRow, "C:\\A & B\\가.mdb");
        grid_.PutText(13, grid::kTopHeaderRow, "b.mdb");
        Put(1, 0, "고객", "이름", "Text");
        Put(1, 12, "고객", "이름", "Text");
        Put(2, 0, "고객", "금액, \"원\"", "Long");
        Put(2, 12, "고객", "금액, \"원\"", "Double");
        Mark(2);
        Mark(6, 2, grid::CellMark::Differs);
        Mark(18, 2, grid::CellMark::Differs);
        Put(3, 12, "고객", kHostile, "Memo");
        Mark(3);
        Mark(17, 3, grid::CellMark::OneSided);
        grid_.SetFormatRow(1);
        grid_.SetCellBackColor(grid::ColoursOf(grid::CellRole::OneSided).light.back);  // no finding
    }

    void HideUnmarked() {
        grid_.SetFormatRow(1);
        grid_.SetRowHidden(true);
    }
    [[nodiscard]] compare::ComparisonResult Result() const { return {grid_, 2}; }

  private:
    void Put(int row, int offset, const std::string& table, const std::string& field,
             const std::string& type) {
        grid_.SetRowCount(std::max(grid_.RowCount(), row));
        grid_.PutText(offset + grid::cell::kTable, row, table);
        grid_.PutText(offset + grid::cell::kField, row, field);
        grid_.PutText(offset + grid::cell::kType, row, type);
        grid_.PutText(offset + grid::cell::kKey, row, table + "." + field);
    }
    void Mark(int row) { grid_.PutText(grid::kCompareColumn, row, "!"); }
    void Mark(int column, int row, grid::CellMark mark) {
        grid_.SetFormatCol(column);
        grid_.SetFormatRow(row);
        grid_.SetCellMark(mark);
    }

    grid::ResultGrid grid_;
};

using Writer = void (*)(std::ostream&, const compare::ComparisonResult&);

std::string Written(Writer write, const compare::ComparisonResult& result) {
    std::ostringstream out;
    write(out, result);
    return out.str();
}

void PlainText(std::ostream& out, const compare::ComparisonResult& result) {
    WriteComparisonText(out, result, {});
}

TEST(ComparisonReport, TextIsAlignedAndSaysWhatDiffers) {
    const HandMade made;
    EXPECT_EQ(Written(PlainText, made.Result()),
              "A: C:\\A & B\\가.mdb\nB: b.mdb\n\n"
              "테이블명  P  F  I  필드명      Type  Size  Def  Null  Zro  비교  "
              "테이블명  P  F  I  필드명                       Type    Size  Def  Null  Zro\n"
              "--------  -  -  -  ----------  ----  ----  ---  ----  ---  ----  "
              "--------  -  -  -  ---------------------------  ------  ----  ---  ----  ---  ----------\n"
              "고객               이름        Text                              "
              "고객               이름                         Text\n"
              "고객               금액, \"원\"  Long                        !     "
              "고객               금액, \"원\"                   Double                        다름: Type\n"
              "                                                           !     "
              "고객               <script>alert(\"x\")</script>  Memo                          B에만 있음\n"
              "\n2건의 다른곳이 발견 되었습니다.\n");
}

TEST(ComparisonReport, TextHasColoursOnlyWhenAsked) {
    const HandMade made;
    std::ostringstream coloured;
    WriteComparisonText(coloured, made.Result(), {.colours = true});
    EXPECT_THAT(coloured.str(), HasSubstr("\x1b[30;48;2;255;0;0mDouble\x1b[0m"));
    EXPECT_THAT(coloured.str(), HasSubstr("\x1b[30;48;2;192;192;255m<script>"));
    EXPECT_THAT(Written(PlainText, made.Result()), Not(HasSubstr("\x1b")));
}

TEST(ComparisonReport, CsvHasAColumnForEveryCell) {
    HandMade made;
    EXPECT_EQ(Written(WriteComparisonCsv, made.Result()),
              "mark,a_table,a_P,a_F,a_I,a_field,a_type,a_size,a_def,a_null,a_zro,"
              "b_table,b_P,b_F,b_I,b_field,b_type,b_size,b_def,b_null,b_zro,red,blue\r\n"
              ",고객,,,,이름,Text,,,,,고객,,,,이름,Text,,,,,,\r\n"
              "!,고객,,,,\"금액, \"\"원\"\"\",Long,,,,,고객,,,,\"금액, \"\"원\"\"\",Double,,,,,type,\r\n"
              "!,,,,,,,,,,,고객,,,,\"<script>alert(\"\"x\"\")</script>\",Memo,,,,,,b\r\n");
}

TEST(ComparisonReport, JsonHasTheAgreedShape) {
    HandMade made;
    const auto json = nlohmann::ordered_json::parse(Written(WriteComparisonJson, made.Result()));
    EXPECT_EQ(json["a"], "C:\\A & B\\가.mdb");
    EXPECT_EQ(json["differences"], 2);
    EXPECT_EQ(json["message"], "2건의 다른곳이 발견 되었습니다.");
    ASSERT_EQ(json["rows"].size(), 3U);
    EXPECT_EQ(json["rows"][0]["mark"], "");
    EXPECT_EQ(
        json["rows"][1].dump(),
        R"({"mark":"!","a":{"table":"고객","P":"","F":"","I":"","field":"금액, \"원\"","type":"Long","size":"",)"
        R"("def":"","null":"","zro":""},"b":{"table":"고객","P":"","F":"","I":"","field":"금액, \"원\"",)"
        R"("type":"Double","size":"","def":"","null":"","zro":""},"red":["type"],"blue":""})");
    EXPECT_TRUE(json["rows"][2]["a"].is_null());
    EXPECT_EQ(json["rows"][2]["blue"], "b");
    EXPECT_EQ(json["rows"][2]["b"]["field"], kHostile);
}

TEST(ComparisonReport, HiddenRowsAreLeftOut) {
    HandMade made;
    made.HideUnmarked();
    EXPECT_THAT(Written(PlainText, made.Result()), Not(HasSubstr("이름")));
    EXPECT_THAT(Written(WriteComparisonCsv, made.Result()), Not(HasSubstr("이름")));
    EXPECT_EQ(nlohmann::json::parse(Written(WriteComparisonJson, made.Result()))["rows"].size(), 2U);
}

TEST(HtmlReport, EscapesEverythingAndPaintsLikeTheWindow) {
    const HandMade made;
    const std::string html = Written(WriteComparisonHtml, made.Result());
    EXPECT_THAT(html, Not(HasSubstr("<script>alert")));
    EXPECT_THAT(html, HasSubstr("<td class=\"o\">&lt;script&gt;alert(&quot;x&quot;)&lt;/script&gt;</td>"));
    EXPECT_THAT(html, HasSubstr("DB A: C:\\A &amp; B\\가.mdb"));
    EXPECT_THAT(html, HasSubstr("<td class=\"r\">Double</td>"));
    EXPECT_THAT(html, HasSubstr("<span class=\"v\">다름: Type</span>"));
    EXPECT_THAT(html, HasSubstr("<small>B만</small>"));
    for (const char* colour : {"rgb(255,0,0)", "rgb(192,192,255)", "rgb(128,255,255)"}) {
        EXPECT_THAT(html, HasSubstr(colour));
    }
    EXPECT_THAT(html, Not(HasSubstr("http://")));
    EXPECT_THAT(html, Not(HasSubstr("https://")));
}

TEST(HtmlReport, KeepsHiddenRowsBehindItsSwitch) {
    HandMade made;
    EXPECT_THAT(Written(WriteComparisonHtml, made.Result()), HasSubstr("<body>"));
    made.HideUnmarked();
    const std::string html = Written(WriteComparisonHtml, made.Result());
    EXPECT_THAT(html, HasSubstr("<body class=\"only\">"));
    EXPECT_THAT(html, HasSubstr("id=\"only\" autocomplete=\"off\" checked>"));
    EXPECT_THAT(html, HasSubstr("이름"));
}

}  // namespace
}  // namespace tavrel::report
