#include "app/grid/RowNumbers.h"

#include <QPaintEvent>
#include <QPainter>

namespace tavrel::app {

RowNumbers::RowNumbers(const grid::ResultGrid& grid, QWidget* parent)
    : QHeaderView(Qt::Vertical, parent), grid_(grid) {
    setSectionsClickable(true);
    setSectionResizeMode(QHeaderView::Fixed);
    setMinimumSectionSize(1);
    setDefaultAlignment(Qt::AlignCenter);
    setHighlightSections(false);
}

void RowNumbers::paintEvent(QPaintEvent* event) {
    if (grid_.Repaint()) {
        QHeaderView::paintEvent(event);
    } else {
        QPainter(viewport()).fillRect(event->rect(), palette().color(QPalette::Button));
    }
}

}  // namespace tavrel::app
