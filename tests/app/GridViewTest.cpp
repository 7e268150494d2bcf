// The grid on the screen: rows, headers, colours, copying, size.
#include <chrono>
#include <numeric>

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QPainter>
#include <QScrollBar>

#include "app/GridFixture.h"
#include "app/grid/GridColours.h"
#include "app/grid/GridColumns.h"
#include "app/grid/GridDelegate.h"
#include "app/grid/OverviewBar.h"

namespace tavrel::app {
namespace {

TEST_F(GridOnScreen, JoinsTheHeaderAndShowsBothPaths) {
    grid.PutText(1, grid::kTopHeaderRow, "/데이터/" + std::string(200, 'a') + "/dbMain.mdb");
    grid.PutText(13, grid::kTopHeaderRow, "/b.mdb");
    const QRect first = HeaderCell(1, grid::kTopHeaderRow).rect;
    int width = 0;
    for (int column = 0; column < 11; ++column) {
        width += view.columnWidth(column);
    }
    EXPECT_EQ(first.width(), width);
    EXPECT_EQ(first.height() * 2, view.Header().height());
    EXPECT_EQ(HeaderCell(12, grid::kTopHeaderRow).text, "비교");
    EXPECT_EQ(HeaderCell(12, grid::kTopHeaderRow).rect.height(), view.Header().height());
    EXPECT_EQ(HeaderCell(13, grid::kTopHeaderRow).text, "/b.mdb");
    for (const GridHeader::Cell& cell : view.Header().VisibleCells()) {
        const bool isPath = cell.cells.columns > 1;
        EXPECT_TRUE(isPath || view.Header().fontMetrics().horizontalAdvance(cell.text) < cell.rect.width());
    }
    EXPECT_TRUE(view.isColumnHidden(10));
    EXPECT_TRUE(view.isColumnHidden(22));
    EXPECT_FALSE(view.horizontalScrollBar()->isVisible());
}

TEST_F(GridOnScreen, TheCurrentCellIsTheActiveCell) {
    Fill(500, 7);
    grid.ActivateCell(12, 350);
    EXPECT_EQ(view.currentIndex(), view.Model().IndexOf(12, 350));
    EXPECT_TRUE(view.viewport()->rect().contains(CellRect(12, 350)));
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(grid.ActiveRow(), 351);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, CellRect(5, 345).center());
    EXPECT_EQ(grid.ActiveRow(), 345);
    EXPECT_EQ(grid.ActiveColumn(), 5);
    QTest::keyClicks(&view, "x");
    QTest::keyClick(&view, Qt::Key_F2);
    EXPECT_EQ(grid.Text(5, 345), "f345");
}

TEST_F(GridOnScreen, PaintsColoursAndMergesEqualTableNames) {
    Fill(8, 3);
    grid.ActivateCell(12, 6);
    Mark(5, 2, grid::CellMark::Differs);
    Mark(17, 3, grid::CellMark::OneSided);
    EXPECT_EQ(ColourAt(CellRect(5, 2).center() + QPoint(20, 0)), QColor(255, 0, 0));
    EXPECT_EQ(ColourAt(CellRect(17, 3).center() + QPoint(20, 0)), QColor(192, 192, 255));
    EXPECT_EQ(ColourAt(CellRect(12, 4).center() + QPoint(12, 0)), QColor(128, 255, 255));
    const QColor line = GridLineColour(view.palette());
    for (int row = 1; row <= 8; ++row) {
        const bool first = row == 1 || row == 5;
        EXPECT_EQ(Ink(1, row) > 0, first) << row;
        EXPECT_EQ(Ink(13, row) > 0, first) << row;
        const QColor under = ColourAt(CellRect(1, row).bottomLeft() + QPoint(5, 0));
        EXPECT_EQ(under == line, row == 4 || row == 8) << row;
    }
    Fill(400, 3);
    view.scrollTo(view.Model().IndexOf(1, 302), QAbstractItemView::PositionAtTop);
    EXPECT_GT(Ink(1, 302), 0);
    EXPECT_EQ(Ink(1, 303), 0);
    EXPECT_EQ(grid.Text(1, 303), "table75");
}

TEST_F(GridOnScreen, SaysDifferencesInWords) {
    Fill(3, 1);
    for (const int offset : {0, 12}) {
        Mark(offset + 6, 1, grid::CellMark::Differs);
        Mark(offset + 7, 1, grid::CellMark::Differs);
    }
    Mark(17, 2, grid::CellMark::OneSided);
    grid.ClearBlock(1, 2, 11, 2);
    const auto words = [this](int column, int row) {
        return FromQt(view.Model().IndexOf(column, row).data(Qt::AccessibleTextRole).toString());
    };
    EXPECT_EQ(words(12, 1), "다름: Type, Size");
    EXPECT_EQ(words(12, 2), "B에만 있음");
    EXPECT_EQ(words(17, 2), "f2 (다름)");
    EXPECT_EQ(words(17, 3), "f3");
}

TEST_F(GridOnScreen, CopiesTheSelectionAsTabSeparatedText) {
    Fill(6, 2);
    grid.PutText(8, 2, "a\t\"b\"\nc");
    HideUnmarked();
    QApplication::processEvents();
    view.setCurrentIndex(view.Model().IndexOf(5, 2));
    view.selectionModel()->select({view.Model().IndexOf(5, 2), view.Model().IndexOf(13, 4)},
                                  QItemSelectionModel::ClearAndSelect);
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(FromQt(QApplication::clipboard()->text()),
              "f2\t\t\t\"a\t\"\"b\"\"\nc\"\t\t\t!\ttable0\nf4\t\t\t\t\t\t!\ttable0\n");
    view.selectionModel()->select(view.Model().IndexOf(1, 2), QItemSelectionModel::ClearAndSelect);
    view.selectionModel()->select(view.Model().IndexOf(5, 6), QItemSelectionModel::Select);
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(FromQt(QApplication::clipboard()->text()), "table0\t\t\t\t\n\t\t\t\tf6\n");
    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    const QString all = QApplication::clipboard()->text();
    EXPECT_FALSE(all.contains("key"));
    EXPECT_EQ(all.count('\n'), 4);
    EXPECT_EQ(all.count('\t'), 3 * 20 + 1);  // one stands in a text
}

TEST_F(GridOnScreen, CopiesWithHeadersDifferingRowsAndOneCell) {
    Fill(4, 2);
    grid.PutText(6, 3, "a\t\"b\"");
    const auto copied = [] { return FromQt(QApplication::clipboard()->text()); };
    view.setCurrentIndex(view.Model().IndexOf(6, 3));
    view.selectionModel()->select({view.Model().IndexOf(11, 1), view.Model().IndexOf(13, 3)},
                                  QItemSelectionModel::ClearAndSelect);
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(copied(), "비교\t테이블명 (B)\n\ttable0\n!\ttable0\n\ttable0\n");
    view.CopyDiffering();
    EXPECT_EQ(copied(), "!\ttable0\n");
    view.CopyCell();
    EXPECT_EQ(copied(), "a\t\"b\"");
    view.selectionModel()->select(view.Model().IndexOf(5, 1), QItemSelectionModel::ClearAndSelect);
    view.CopyDiffering();  // there is none
    EXPECT_EQ(copied(), "a\t\"b\"");
}

TEST_F(GridOnScreen, AClickOnABandSelectsItsSide) {
    Fill(5, 2);
    const QRect band = HeaderCell(13, grid::kTopHeaderRow).rect;
    QTest::mouseClick(view.Header().viewport(), Qt::LeftButton, {}, band.center());
    EXPECT_TRUE(view.selectionModel()->isSelected(view.Model().IndexOf(13, 5)));
    EXPECT_TRUE(view.selectionModel()->isSelected(view.Model().IndexOf(22, 1)));
    EXPECT_FALSE(view.selectionModel()->isSelected(view.Model().IndexOf(12, 1)));
}

TEST_F(GridOnScreen, ADraggedColumnKeepsItsWidth) {
    Fill(5, 2);
    const int edge = view.Header().sectionViewportPosition(1);
    const int height = view.Header().height();
    const int before = view.columnWidth(0);
    QTest::mousePress(view.Header().viewport(), Qt::LeftButton, {}, {edge - 1, height - 4});
    QTest::mouseMove(view.Header().viewport(), {edge + 39, height - 4});
    QTest::mouseRelease(view.Header().viewport(), Qt::LeftButton, {}, {edge + 39, height - 4});
    EXPECT_NEAR(view.columnWidth(0), before + 40, 2);
    const int dragged = view.columnWidth(0);
    view.resize(1400, 400);
    Fill(6, 2);
    EXPECT_EQ(view.columnWidth(0), dragged);
}

TEST_F(GridOnScreen, ADoubleClickOnABorderFitsTheColumn) {
    Fill(3000, 2);
    const std::string longest = "DEFAULT 값 12345678901234567890";
    grid.PutText(8, 2900, longest);
    grid.PutText(6, 2, "Currency");
    Mark(8, 2900, grid::CellMark::Differs);
    Mark(6, 2, grid::CellMark::Differs);
    QFont bold = view.font();
    bold.setBold(true);
    const std::pair<int, std::string> cases[] = {{6, "Currency"}, {8, longest}};
    for (const auto& [column, text] : cases) {
        const int edge = view.Header().sectionViewportPosition(column);
        const QPoint border(edge - 1, view.Header().height() - 4);
        QTest::mouseClick(view.Header().viewport(), Qt::LeftButton, {}, border);
        QTest::mouseDClick(view.Header().viewport(), Qt::LeftButton, {}, border);
        const QRect cell(0, 0, view.columnWidth(column - 1), 20);
        const int needed = QFontMetrics(bold).horizontalAdvance(ToQt(text));
        EXPECT_GE(TextRoom(cell, column, CellSign::Corner).width(), needed) << text;
        EXPECT_LE(TextRoom(cell, column, CellSign::Corner).width(), needed + 20) << text;
    }
}

TEST_F(GridOnScreen, TheKeyboardOpensTheMenuAtTheCurrentCell) {
    Fill(30, 2);
    grid.ActivateCell(5, 7);
    std::vector<QPoint> places;
    view.onContextMenu = [&places](const QPoint& place) { places.push_back(place); };
    QTest::keyClick(&view, Qt::Key_F10, Qt::ShiftModifier);
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {5, 5}, view.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(view.viewport(), &menuKey);
    QTest::keyClick(&view, Qt::Key_F10);
    const QPoint below = view.viewport()->mapToGlobal(CellRect(5, 7).bottomLeft());
    EXPECT_EQ(places, (std::vector<QPoint>{below, below}));
}

TEST_F(GridOnScreen, ReadsNothingWhileRepaintIsOff) {
    Fill(5, 2);
    grid.SetRepaint(false);
    grid.SetRowCount(0);
    view.viewport()->repaint();
    const QImage numbers = view.verticalHeader()->viewport()->grab().toImage();
    for (int y = 0; y < numbers.height(); ++y) {
        ASSERT_EQ(numbers.pixel(numbers.width() / 2, y), numbers.pixel(1, 1)) << y;
    }
    EXPECT_EQ(view.model()->rowCount(), 5);
    EXPECT_EQ(ColourAt({5, 5}), view.palette().color(QPalette::Base));
    grid.SetRepaint(true);
    EXPECT_EQ(view.model()->rowCount(), 0);
}

TEST_F(GridOnScreen, IsQuickWith200000Rows) {
    using Clock = std::chrono::steady_clock;
    Fill(200'000, 2);
    const auto start = Clock::now();
    grid.SetRepaint(false);
    HideUnmarked();
    grid.SetRepaint(true);
    EXPECT_EQ(view.model()->rowCount(), 100'000);
    for (int page = 0; page < 20; ++page) {
        view.verticalScrollBar()->setValue(page * 5000);
        view.viewport()->repaint();
    }
    view.selectAll();
    view.viewport()->repaint();
    // Generous: it takes a tenth of this, but not on a machine under sanitizers that does other things too.
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(10));
}

/// The room at the designed size, beside a wide scroll bar with its strip.
constexpr int kDesignedRoom = 871 - 2 - 17 - kOverviewWidth;

TEST(ColumnWidths, HoldTheUsualTextsInTheDesignedRoomInAnyType) {
    for (const char* family : {"NanumGothic", "NanumBarunGothic", "DejaVu Sans", "DejaVu Sans Mono",
                               "DejaVu Serif", "Nimbus Sans"}) {
        for (const int pixels : {9, 11, 12}) {
            QFont font(QString::fromLatin1(family));
            font.setPixelSize(pixels);
            QFont bold = font;
            bold.setBold(true);
            const ColumnWidths widths = WidthsFor(font, kDesignedRoom, 12'345);
            EXPECT_LE(std::accumulate(widths.begin(), widths.end(), 0), kDesignedRoom) << family << pixels;
            for (int column = 1; column <= grid::kColumnCount; ++column) {
                const int width = widths[static_cast<std::size_t>(column)];
                const QString caption = ToQt(grid::LayoutOf(column).caption);
                const bool hidden = grid::LayoutOf(column).hidden;
                EXPECT_TRUE(hidden || width >= QFontMetrics(font).horizontalAdvance(caption) + 6)
                    << family << pixels << ": " << column;
            }
            for (const int type : {6, 18}) {
                const QRect cell(0, 0, widths[static_cast<std::size_t>(type)], 20);
                EXPECT_GE(TextRoom(cell, type, CellSign::Corner).width(),
                          QFontMetrics(bold).horizontalAdvance("Currency"))
                    << family << pixels;
            }
        }
    }
}

TEST(CellLooks, AreReadableInLightAndDark) {
    QPalette light;
    light.setColor(QPalette::Base, Qt::white);
    light.setColor(QPalette::Text, Qt::black);
    light.setColor(QPalette::Highlight, QColor(48, 140, 198));
    light.setColor(QPalette::HighlightedText, Qt::white);
    QPalette dark = light;
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::Text, QColor(230, 230, 230));
    for (const QPalette& palette : {light, dark}) {
        for (const grid::CellRole role :
             {grid::CellRole::Plain, grid::CellRole::Differs, grid::CellRole::OneSided}) {
            const CellLook look = LookOf(role, palette);
            EXPECT_GE(Contrast(look.back, look.text), 4.5) << static_cast<int>(role);
            EXPECT_EQ(look.sign == CellSign::None, role == grid::CellRole::Plain);
            if (role != grid::CellRole::Plain) {
                const CellLook selected = Selected(look, palette);
                EXPECT_GE(Contrast(selected.back, selected.text), 4.5) << static_cast<int>(role);
            }
        }
    }
    const CellLook compare = LookOf(grid::CellRole::Compare, dark);
    EXPECT_GE(Contrast(compare.back, compare.text), 4.5);
}

}  // namespace
}  // namespace tavrel::app
