// The grid's vertical scroll bar, with a strip beside it that shows where the differences lie.
#pragma once

#include <QScrollBar>

#include "app/grid/RowMarks.h"

namespace tavrel::app {

/// Width of the strip in logical pixels.
inline constexpr int kOverviewWidth = 9;

/// Of the strip's width a row that differs takes all, one that a side has alone that side's half; the rows on
/// screen are framed.  A click in the strip, or dragging there, shows the rows of that height.
class OverviewBar : public QScrollBar {
  public:
    /// The grid and the marks must outlive the bar.  While the grid's Repaint is off no marks are shown.
    OverviewBar(const grid::ResultGrid& grid, const RowMarks& marks, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void initStyleOption(QStyleOptionSlider* option) const override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

  private:
    [[nodiscard]] QRect Strip() const;
    /// Rows of the listing: those on screen and those that scrolling shows.
    [[nodiscard]] int Rows() const { return maximum() + pageStep(); }
    /// The upper edge of a row in the strip.
    [[nodiscard]] int TopOf(int row) const;
    void PaintMarks(QPainter& painter) const;
    void ShowRowsAt(int y);

    const grid::ResultGrid& grid_;
    const RowMarks& marks_;
    bool dragging_ = false;
};

}  // namespace tavrel::app
