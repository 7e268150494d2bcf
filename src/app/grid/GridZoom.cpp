#include "app/grid/GridZoom.h"

#include <algorithm>
#include <vector>

#include <QHeaderView>
#include <QShortcut>
#include <QTableView>
#include <QWheelEvent>

namespace tavrel::app {

namespace {

constexpr int kSmallest = 8;  ///< size of the type in pixels
constexpr int kLargest = 36;
constexpr int kWheelStep = 120;

std::vector<int> Widths(const QHeaderView& header) {
    std::vector<int> widths;
    for (int section = 0; section < header.count(); ++section) {
        widths.push_back(header.sectionSize(section));
    }
    return widths;
}

}  // namespace

GridZoom::GridZoom(QTableView& view) : QObject(&view), view_(view) {
    for (const int larger : {Qt::Key_Plus, Qt::Key_Equal}) {  // the plus of most keyboards needs Shift
        AddKey(larger, 1);
    }
    AddKey(Qt::Key_Minus, -1);
    AddKey(Qt::Key_0, 0);
    view.viewport()->installEventFilter(this);
}

void GridZoom::AddKey(int key, int by) {
    auto* shortcut = new QShortcut(QKeySequence(static_cast<int>(Qt::CTRL) | key), &view_);
    shortcut->setContext(Qt::WidgetShortcut);
    connect(shortcut, &QShortcut::activated, this, [this, by] { Step(by); });
}

void GridZoom::Step(int by) {
    const int pixels = view_.fontInfo().pixelSize();
    if (own_ == 0) {
        own_ = pixels;
    }
    SetSize(by == 0 ? own_ : std::clamp(pixels + by, kSmallest, kLargest));
}

void GridZoom::SetSize(int pixels) {
    QFont font = view_.font();
    const int before = view_.fontInfo().pixelSize();
    const std::vector<int> old = Widths(*view_.horizontalHeader());
    font.setPixelSize(pixels);
    view_.setFont(font);
    if (pixels == before || Widths(*view_.horizontalHeader()) != old) {
        return;  // the widths have adapted themselves
    }
    for (int section = 0; section < view_.horizontalHeader()->count(); ++section) {
        if (!view_.isColumnHidden(section)) {
            view_.setColumnWidth(section, old[static_cast<std::size_t>(section)] * pixels / before);
        }
    }
}

bool GridZoom::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Wheel ||
        !static_cast<QWheelEvent*>(event)->modifiers().testFlag(Qt::ControlModifier)) {
        return QObject::eventFilter(watched, event);
    }
    turned_ += static_cast<QWheelEvent*>(event)->angleDelta().y();
    const int steps = turned_ / kWheelStep;
    turned_ -= steps * kWheelStep;
    if (steps != 0) {
        Step(steps);
    }
    return true;
}

}  // namespace tavrel::app
