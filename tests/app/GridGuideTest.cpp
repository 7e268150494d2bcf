// Finding one's way in the grid: jumps, the overview, the place in the corner, finding, tables, words.
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>

#include "app/GridFixture.h"
#include "app/grid/CellWords.h"
#include "app/grid/OverviewBar.h"

namespace tavrel::app {
namespace {

class GridGuideOnScreen : public GridOnScreen {
  protected:
    GridGuideOnScreen() {
        view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
        view.setFocus();
    }
    /// A row that one side has alone.
    void MakeOneSided(int row, int offset) {
        grid.ClearBlock(13 - offset, row, 23 - offset, row);
        Mark(offset + 5, row, grid::CellMark::OneSided);
    }
    [[nodiscard]] QFrame& Line() { return *view.findChild<QFrame*>("findLine"); }
    [[nodiscard]] std::string Count() { return FromQt(Line().findChild<QLabel*>()->text()); }
    [[nodiscard]] QLineEdit& Sought() { return *Line().findChild<QLineEdit*>(); }
    [[nodiscard]] std::pair<int, int> Active() const { return {grid.ActiveColumn(), grid.ActiveRow()}; }
};

TEST_F(GridGuideOnScreen, AJumpLandsInTheUpperThirdAndMarksTheWholeRow) {
    Fill(500, 7);
    grid.ActivateCell(12, 350);
    const int height = view.rowHeight(0);
    const QRect landed = CellRect(12, 350);
    EXPECT_GE(landed.top(), 2 * height);
    EXPECT_LE(landed.top(), view.viewport()->height() / 3);
    grid.ActivateCell(12, 352);
    EXPECT_EQ(CellRect(12, 350), landed);  // amid the seen, so nothing moves
    for (const int column : {5, 17}) {
        EXPECT_EQ(ColourAt(CellRect(column, 352).topLeft() + QPoint(9, 0)),
                  view.palette().color(QPalette::Highlight));
    }
    grid.ActivateCell(12, 500);
    EXPECT_EQ(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum());
    grid.ActivateCell(12, 1);
    EXPECT_EQ(CellRect(12, 1).top(), 0);
}

TEST_F(GridGuideOnScreen, TheCornerTellsThePlaceAndTheKinds) {
    Fill(20, 4);
    MakeOneSided(8, 0);
    MakeOneSided(12, 12);
    MakeOneSided(16, 12);
    const auto& corner = *view.findChild<QLabel*>("place");
    grid.ActivateCell(12, 12);
    EXPECT_EQ(FromQt(corner.text()), "3\n/ 5");
    EXPECT_EQ(FromQt(corner.parentWidget()->toolTip()), "다름 2, A에만 있음 1, B에만 있음 2");
    grid.ActivateCell(12, 11);
    EXPECT_EQ(FromQt(corner.text()), "–\n/ 5");
    grid.SetFormatRow(4);
    grid.SetRowHidden(true);
    QApplication::processEvents();
    grid.ActivateCell(12, 12);
    EXPECT_EQ(FromQt(corner.text()), "2\n/ 4");
    grid.SetRowCount(0);
    EXPECT_EQ(FromQt(corner.text()), "");
}

TEST_F(GridGuideOnScreen, TheOverviewShowsWhereTheDifferencesLie) {
    Fill(1000, 250);
    MakeOneSided(500, 0);
    MakeOneSided(750, 12);
    QApplication::processEvents();  // the bar gets its place
    QScrollBar& bar = *view.verticalScrollBar();
    const QImage image = bar.grab().toImage();
    const auto at = [&](int x, int row) {
        const int y = static_cast<int>((row - 1) * bar.height() / 1000);
        return image.pixelColor(QPoint(bar.width() - kOverviewWidth + x, y) * image.devicePixelRatio());
    };
    const QColor back = bar.palette().color(QPalette::Base);
    const QColor differs = at(1, 250);
    EXPECT_EQ(at(kOverviewWidth - 1, 250), differs);
    EXPECT_GT(differs.red(), 200);
    EXPECT_NE(at(1, 500), back);
    EXPECT_NE(at(1, 500), differs);
    EXPECT_EQ(at(kOverviewWidth - 1, 500), back);
    EXPECT_EQ(at(1, 750), back);
    EXPECT_NE(at(kOverviewWidth - 1, 750), back);
    EXPECT_EQ(at(1, 600), back);
    EXPECT_NE(at(1, 1), back);  // the frame
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {bar.width() - 3, bar.height() * 3 / 4});
    EXPECT_TRUE(view.viewport()->rect().contains(CellRect(12, 750)));
    const int extent = bar.width() - kOverviewWidth;
    EXPECT_EQ(extent, QScrollBar(Qt::Vertical).sizeHint().width());
    const int shown = bar.value();
    for (const int x : {2, extent - 3}) {  // both ends of the bar's own button
        QTest::mouseClick(&bar, Qt::LeftButton, {}, {x, bar.height() - 4});
    }
    EXPECT_EQ(bar.value(), shown + 2);
    grid.SetRepaint(false);
    grid.SetRowCount(0);
    bar.repaint();  // reads nothing of the grid
    grid.SetRepaint(true);
}

TEST_F(GridGuideOnScreen, FindsTablesAndFieldsOnBothSides) {
    Fill(40, 7);
    MakeOneSided(19, 12);
    grid.ActivateCell(12, 12);
    QTest::keyClick(&view, Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(Line().isVisible());
    QTest::keyClicks(&Sought(), "F1");
    EXPECT_EQ(Active(), std::pair(5, 12));
    EXPECT_EQ(Count(), "4 / 11");
    const std::pair<Qt::KeyboardModifiers, std::pair<int, int>> steps[] = {
        {Qt::ShiftModifier, {5, 11}}, {Qt::NoModifier, {5, 12}},   {Qt::ShiftModifier, {5, 11}},
        {Qt::ShiftModifier, {5, 10}}, {Qt::ShiftModifier, {5, 1}}, {Qt::ShiftModifier, {17, 19}},
        {Qt::NoModifier, {5, 1}}};
    for (const auto& [modifiers, expected] : steps) {
        QTest::keyClick(&Sought(), Qt::Key_Return, modifiers);
        EXPECT_EQ(Active(), expected);
    }
    Sought().setText("TABLE9");
    EXPECT_EQ(Active(), std::pair(1, 37));
    EXPECT_EQ(Count(), "1 / 1");
    EXPECT_FALSE(Line().geometry().intersects(CellRect(1, 37).translated(view.viewport()->pos())));
    Sought().setText("없는것");
    EXPECT_EQ(Count(), "없음");
    EXPECT_EQ(Active(), std::pair(1, 37));
    Sought().setText("f40");
    Fill(3, 1);
    EXPECT_EQ(Count(), "없음");
    QTest::keyClick(&Sought(), Qt::Key_Return);
    EXPECT_TRUE(view.CloseFindLine());
    EXPECT_FALSE(view.CloseFindLine());
    EXPECT_EQ(QApplication::focusWidget(), &view);
}

TEST_F(GridGuideOnScreen, GoesFromTableToTable) {
    Fill(12, 3);
    MakeOneSided(5, 12);
    const std::pair<Qt::Key, int> steps[] = {{Qt::Key_Down, 5}, {Qt::Key_Down, 9}, {Qt::Key_Down, 9},
                                             {Qt::Key_Up, 5},   {Qt::Key_Up, 1},   {Qt::Key_Up, 1}};
    for (const auto& [key, row] : steps) {
        QTest::keyClick(&view, key, Qt::ControlModifier);
        EXPECT_EQ(grid.ActiveRow(), row);
    }
    grid.ActivateCell(12, 7);
    QTest::keyClick(&view, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(grid.ActiveRow(), 5);
    QTest::keyClick(&view, Qt::Key_T, Qt::ControlModifier);
    auto* list = view.findChild<QListWidget*>();
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->count(), 3);
    EXPECT_EQ(FromQt(list->item(0)->text()), "table0  (1)");
    EXPECT_EQ(FromQt(list->item(2)->text()), "table2  (2)");
    EXPECT_EQ(list->currentRow(), 1);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(grid.ActiveRow(), 9);
}

TEST_F(GridGuideOnScreen, SaysInWordsWhatDiffersAtACell) {
    Fill(3, 1);
    grid.PutText(6, 1, "Text");
    grid.PutText(18, 1, "<b>Long</b>");
    for (const int column : {6, 7, 18, 19}) {
        Mark(column, 1, grid::CellMark::Differs);
    }
    MakeOneSided(2, 12);
    const std::string type = "Type\n  A: Text\n  B: <b>Long</b>";
    const std::tuple<int, int, std::string> cells[] = {
        {6, 1, type},
        {18, 1, type},
        {12, 1, "다름: Type, Size\n" + type + "\nSize\n  A: (없음)\n  B: (없음)"},
        {5, 1, ""},
        {17, 2, "B에만 있음"},
        {12, 2, "B에만 있음"},
        {17, 3, ""}};
    for (const auto& [column, row, words] : cells) {
        EXPECT_EQ(FromQt(WordsForCell(grid, column, row)), words) << column << ", " << row;
    }
}

}  // namespace
}  // namespace tavrel::app
