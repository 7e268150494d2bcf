// The field for a database's path: takes dropped files, selects its whole text when it gets the focus.
#pragma once

#include <QLineEdit>

namespace tavrel::app {

class PathField : public QLineEdit {
  public:
    explicit PathField(QWidget* parent);

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void txtDBPath_GotFocus();
    /// Refuses what carries no list of files.
    static void txtDBPath_OLEDragOver(QDropEvent& event);
    void txtDBPath_OLEDragDrop(QDropEvent& event);

    bool focusedByMouse_ = false;
};

}  // namespace tavrel::app
