// The grid's type larger and smaller.
#include <array>

#include <QApplication>
#include <QWheelEvent>

#include "app/GridFixture.h"

namespace tavrel::app {
namespace {

TEST_F(GridOnScreen, ZoomsByKeysAndWheelAndWidthsFollow) {
    Fill(30, 3);
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    view.setFocus();
    const auto sizes = [this] {
        return std::array{view.fontInfo().pixelSize(), view.rowHeight(0), view.columnWidth(5)};
    };
    const auto before = sizes();
    const auto turn = [this](int by) {
        QWheelEvent wheel({50, 50}, view.viewport()->mapToGlobal(QPoint(50, 50)), {}, {0, by}, {},
                          Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &wheel);
    };
    QTest::keyClick(&view, Qt::Key_Plus, Qt::ControlModifier);
    QTest::keyClick(&view, Qt::Key_Equal, Qt::ControlModifier);
    turn(60);
    turn(60);
    EXPECT_EQ(sizes()[0], before[0] + 3);
    EXPECT_GT(sizes()[1], before[1]);
    EXPECT_GT(sizes()[2], before[2]);
    QTest::keyClick(&view, Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(sizes(), before);
    view.setColumnWidth(5, 100);  // as the user drags it
    turn(8 * 120);
    EXPECT_EQ(view.columnWidth(5), 100 * (before[0] + 8) / before[0]);
    turn(-90 * 120);
    EXPECT_EQ(sizes()[0], 8);
}

}  // namespace
}  // namespace tavrel::app
