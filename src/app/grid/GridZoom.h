// The grid's type larger or smaller: Ctrl+wheel, Ctrl+plus, Ctrl+minus; Ctrl+0 is the window's own again.
#pragma once

#include <QObject>

class QTableView;

namespace tavrel::app {

/// Belongs to the view.  Rows and widths follow the type; widths that the user has chosen do so in
/// proportion.
class GridZoom : public QObject {
  public:
    explicit GridZoom(QTableView& view);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void AddKey(int key, int by);
    /// `by` steps larger; 0: back to the size of the window's type.
    void Step(int by);
    void SetSize(int pixels);

    QTableView& view_;
    int own_ = 0;     ///< the size of the window's type in pixels; 0 before the first step
    int turned_ = 0;  ///< of the wheel, since the last step
};

}  // namespace tavrel::app
