#include "app/grid/OverviewBar.h"

#include <algorithm>
#include <array>

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionSlider>
#include <QToolTip>

#include "app/grid/GridColours.h"

namespace tavrel::app {

namespace {

constexpr int kLeastMark = 2;  ///< height of a mark in pixels

/// In the order in which they are painted: what differs stays in sight where rows share a pixel.
struct ToneLook {
    RowTone tone;
    QRgb light;
    QRgb dark;
    int left;   ///< in halves of the strip
    int width;  ///< the same
};
constexpr std::array<ToneLook, 3> kLooks = {{
    {RowTone::OnlyA, qRgb(112, 112, 224), qRgb(150, 150, 255), 0, 1},
    {RowTone::OnlyB, qRgb(0, 140, 150), qRgb(80, 200, 210), 1, 1},
    {RowTone::Differs, qRgb(230, 0, 0), qRgb(255, 90, 90), 0, 2},
}};

}  // namespace

OverviewBar::OverviewBar(const grid::ResultGrid& grid, const RowMarks& marks, QWidget* parent)
    : QScrollBar(Qt::Vertical, parent), grid_(grid), marks_(marks) {}

QSize OverviewBar::sizeHint() const {
    return QScrollBar::sizeHint() + QSize(kOverviewWidth, 0);
}

/// The bar itself has the room beside the strip: its left part, for styles place a bar's parts from there on.
void OverviewBar::initStyleOption(QStyleOptionSlider* option) const {
    QScrollBar::initStyleOption(option);
    option->rect.setRight(option->rect.right() - kOverviewWidth);
}

QRect OverviewBar::Strip() const {
    return {width() - kOverviewWidth, 0, kOverviewWidth, height()};
}

int OverviewBar::TopOf(int row) const {
    return static_cast<int>(static_cast<qint64>(row) * height() / std::max(Rows(), 1));
}

void OverviewBar::paintEvent(QPaintEvent* event) {
    QScrollBar::paintEvent(event);
    QPainter painter(this);
    painter.fillRect(Strip(), palette().color(QPalette::Base));
    if (grid_.Repaint()) {
        PaintMarks(painter);
    }
    painter.setPen(palette().color(QPalette::Text));
    const int top = TopOf(value());
    painter.drawRect(Strip().left(), top, kOverviewWidth - 1,
                     std::max(TopOf(value() + pageStep()) - top - 1, kLeastMark));
}

void OverviewBar::PaintMarks(QPainter& painter) const {
    const bool dark = IsDark(palette());
    for (const ToneLook& look : kLooks) {
        const int left = Strip().left() + look.left * kOverviewWidth / 2;
        const int width = (look.width * kOverviewWidth + 1) / 2;
        int painted = -1;  // rows above this height are, and many rows share a pixel
        for (const RowMark& mark : marks_.List()) {
            const int top = TopOf(mark.modelRow);
            if (mark.tone == look.tone && top > painted) {
                const int height = std::max(TopOf(mark.modelRow + 1) - top, kLeastMark);
                painter.fillRect(left, top, width, height, QColor(dark ? look.dark : look.light));
                painted = top;
            }
        }
    }
}

void OverviewBar::ShowRowsAt(int y) {
    const int row = static_cast<int>(static_cast<qint64>(y) * Rows() / std::max(height(), 1));
    setValue(row - pageStep() / 2);
}

void OverviewBar::mousePressEvent(QMouseEvent* event) {
    dragging_ = event->button() == Qt::LeftButton && Strip().contains(event->position().toPoint());
    if (dragging_) {
        ShowRowsAt(event->position().toPoint().y());
    } else {
        QScrollBar::mousePressEvent(event);
    }
}

void OverviewBar::mouseMoveEvent(QMouseEvent* event) {
    if (dragging_) {
        ShowRowsAt(event->position().toPoint().y());
    } else {
        QScrollBar::mouseMoveEvent(event);
    }
}

void OverviewBar::mouseReleaseEvent(QMouseEvent* event) {
    if (!std::exchange(dragging_, false)) {
        QScrollBar::mouseReleaseEvent(event);
    }
}

bool OverviewBar::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) {
        return QScrollBar::event(event);
    }
    auto* help = static_cast<QHelpEvent*>(event);
    QToolTip::showText(help->globalPos(), grid_.Repaint() ? marks_.InWords() : QString(), this);
    return true;
}

}  // namespace tavrel::app
