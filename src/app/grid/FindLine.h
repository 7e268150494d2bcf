// The line over the grid in which a table or a field is looked for.
#pragma once

#include <functional>
#include <vector>

#include <QFrame>
#include <QLabel>
#include <QLineEdit>

#include "app/grid/GridSearch.h"

namespace tavrel::app {

/// Stands in the lower right corner of what it lies over, or in the upper one where it would hide a hit.
/// While one types the first hit from the current row on is shown; Enter shows the next one, Shift+Enter the
/// one before, round about.
class FindLine : public QFrame {
  public:
    /// The model must outlive the line.  It begins hidden.
    FindLine(const GridModel& model, QWidget* parent);

    /// Shows the line with its text selected; typing looks from this row on.
    void Open(int modelRow);
    /// The listing is another one: hits are looked for anew when they are needed.
    void Forget();
    /// `hit` is the place of the shown hit in `room`, both in the parent's pixels.
    void Place(const QRect& room, const QRect& hit);

    /// Called with the hit to be shown.
    std::function<void(const Hit&)> onHit;
    std::function<void()> onClose;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Typed();
    void Step(int by);
    void Search();
    void Show();

    const GridModel& model_;
    QLineEdit* text_;
    QLabel* count_;
    std::vector<Hit> hits_;
    bool known_ = false;     ///< hits_ are those of the text
    std::size_t shown_ = 0;  ///< place in hits_
    int from_ = 0;           ///< model row from which typing looks
};

}  // namespace tavrel::app
