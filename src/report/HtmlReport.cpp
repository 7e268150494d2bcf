#include "report/HtmlReport.h"

#include <algorithm>

#include "grid/GridLayout.h"
#include "report/ComparisonReport.h"
#include "report/HtmlPage.h"
#include "report/SideCells.h"

namespace tavrel::report {

namespace {

using compare::kCellCount;
using compare::OneSided;

/// Sum of the shares of the width.
constexpr int kAllShares = [] {
    int all = grid::kRowNumberLayout.share + grid::kCompareLayout.share;
    for (const grid::ColumnLayout& column : grid::kSideLayout) {
        all += 2 * column.share;
    }
    return all;
}();

bool IsCentred(std::size_t cell) {
    return grid::kSideLayout[cell].align == grid::Align::Centre;
}

/// A browser lays out only the parts that are looked at: that keeps a page of 100,000 rows usable.
constexpr std::size_t kRowsOfPart = 500;

bool AnyRowHidden(const compare::ComparisonResult& result) {
    for (std::size_t index = 0; index < result.RowCount(); ++index) {
        if (result.Row(index).hidden) {
            return true;
        }
    }
    return false;
}

void WriteColumn(std::ostream& out, int share) {
    out << "<col style=\"width:" << share * 100.0 / kAllShares << "%\">";
}

void WriteColumns(std::ostream& out) {
    out << "<colgroup>";
    WriteColumn(out, grid::kRowNumberLayout.share);
    for (int side = 0; side < 2; ++side) {
        if (side == 1) {
            WriteColumn(out, grid::kCompareLayout.share);
        }
        for (std::size_t cell = 0; cell < kCellCount; ++cell) {
            WriteColumn(out, grid::kSideLayout[cell].share);
        }
    }
    out << "</colgroup>\n";
}

void WriteCaptions(std::ostream& out) {
    for (std::size_t cell = 0; cell < kCellCount; ++cell) {
        out << "<th scope=\"col\"" << (IsCentred(cell) ? " class=\"n\"" : "") << '>'
            << HtmlText(CaptionOf(cell)) << "</th>";
    }
}

void WriteTableHead(std::ostream& out, const compare::ComparisonResult& result) {
    out << "<thead>\n<tr><th scope=\"col\" rowspan=\"2\">행</th><th scope=\"colgroup\" colspan=\""
        << kCellCount << "\">DB A: " << HtmlText(result.PathA())
        << R"(</th><th scope="col" rowspan="2" class="c">)" << HtmlText(grid::kCompareLayout.caption)
        << R"(</th><th scope="colgroup" colspan=")" << kCellCount << "\">DB B: " << HtmlText(result.PathB())
        << "</th></tr>\n<tr>";
    WriteCaptions(out);
    WriteCaptions(out);
    out << "</tr>\n</thead>\n";
}

std::string_view ClassOf(const compare::ResultRow& row, OneSided side, std::size_t cell) {
    if (row.Differs(cell)) {
        return IsCentred(cell) ? " class=\"r n\"" : " class=\"r\"";
    }
    if (row.oneSided == side && cell == kFieldCell) {
        return " class=\"o\"";
    }
    return IsCentred(cell) ? " class=\"n\"" : "";
}

void WriteSide(std::ostream& out, const compare::ResultRow& row, OneSided side) {
    const std::optional<compare::SideCells>& cells = side == OneSided::A ? row.a : row.b;
    if (!cells) {
        out << R"(<td class="x" colspan=")" << kCellCount << "\"></td>";
        return;
    }
    for (std::size_t cell = 0; cell < kCellCount; ++cell) {
        out << "<td" << ClassOf(row, side, cell) << '>' << HtmlText((*cells)[cell]) << "</td>";
    }
}

void WriteCompareCell(std::ostream& out, const compare::ResultRow& row) {
    out << "<td class=\"c\">";
    if (!row.mark.empty()) {
        const std::string words = HtmlText(DifferenceInWords(row));
        const bool oneSided = !row.a || !row.b;
        out << "<b title=\"" << words << "\">" << HtmlText(row.mark) << "</b>"
            << (oneSided ? (row.a ? "<small>A만</small>" : "<small>B만</small>") : "") << "<span class=\"v\">"
            << words << "</span>";
    }
    out << "</td>";
}

void WriteRow(std::ostream& out, const compare::ResultRow& row, std::size_t number) {
    out << "<tr class=\"" << (row.mark.empty() ? 's' : 'd') << R"("><th scope="row">)" << number << "</th>";
    WriteSide(out, row, OneSided::A);
    WriteCompareCell(out, row);
    WriteSide(out, row, OneSided::B);
    out << "</tr>\n";
}

/// Rows `first` to `last` (not included) as a table of its own.
void WritePart(std::ostream& out, const compare::ComparisonResult& result, std::size_t first,
               std::size_t last) {
    constexpr std::size_t kRowHeight =
        23;  // pixels, about: what the scroll bar goes by until the part is shown
    bool marked = false;
    for (std::size_t index = first; index < last && !marked; ++index) {
        marked = !result.Row(index).mark.empty();
    }
    out << "<div class=\"part" << (marked ? "" : " s") << "\" style=\"contain-intrinsic-size:auto "
        << (last - first + 2) * kRowHeight
        << "px\">\n<table>\n<caption>DB A와 DB B의 필드를 나란히 놓은 표, 행 " << first + 1
        << "부터. 다른 행은 비교 열에 !가 있습니다.</caption>\n";
    WriteColumns(out);
    WriteTableHead(out, result);
    out << "<tbody>\n";
    for (std::size_t index = first; index < last; ++index) {
        WriteRow(out, result.Row(index), index + 1);
    }
    out << "</tbody>\n</table>\n</div>\n";
}

void WriteTools(std::ostream& out, bool onlyDifferences, int differences) {
    out << "<div class=\"tools\" role=\"toolbar\" aria-label=\"다른 곳 찾기\">"
           "<button type=\"button\" id=\"previous\" aria-keyshortcuts=\"Shift+F3\">이전 다른 곳 "
           "(Shift+F3)</button>"
           "<button type=\"button\" id=\"next\" aria-keyshortcuts=\"F3\">다음 다른 곳 (F3)</button>"
           "<span id=\"place\" role=\"status\">"
        << (differences > 0 ? "– / " + std::to_string(differences) : "")
        << R"(</span><label><input type="checkbox" id="only" autocomplete="off")"
        << (onlyDifferences ? " checked" : "") << "> 틀린 자료만 보기</label></div>\n";
}

}  // namespace

void WriteDetailedHtml(std::ostream& out, const compare::ComparisonResult& result, const Details* details) {
    const bool onlyDifferences = AnyRowHidden(result);
    WriteHtmlHead(out, "DB 구조 비교");
    out << "<body" << (onlyDifferences ? " class=\"only\"" : "") << ">\n<header>\n<h1>DB 구조 비교</h1>\n<p>"
        << HtmlText(result.Message()) << "</p>\n";
    WriteTools(out, onlyDifferences, result.Differences());
    out << "</header>\n<main>\n";
    std::size_t first = 0;
    do {
        const std::size_t last = std::min(first + kRowsOfPart, result.RowCount());
        WritePart(out, result, first, last);
        first = last;
    } while (first < result.RowCount());
    if (details != nullptr) {
        WriteDetailsHtml(out, *details);
    }
    out << "</main>\n<script>" << kHtmlScript << "</script>\n</body>\n</html>\n";
}

void WriteComparisonHtml(std::ostream& out, const compare::ComparisonResult& result) {
    WriteDetailedHtml(out, result, nullptr);
}

}  // namespace tavrel::report
