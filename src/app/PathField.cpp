#include "app/PathField.h"

#include <QDropEvent>
#include <QFocusEvent>
#include <QMimeData>

#include "app/DroppedFiles.h"

namespace tavrel::app {

namespace {

/// Empty when the data carries no list of files.
QString FirstFile(const QMimeData& data) {
    return DroppedFiles(data).value(0);
}

}  // namespace

PathField::PathField(QWidget* parent) : QLineEdit(parent) {
    setAcceptDrops(true);
    setDragEnabled(false);
}

void PathField::txtDBPath_GotFocus() {
    selectAll();
}

void PathField::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    // Coming back from another window or a menu is no new focus: what was selected stays.
    if (event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason) {
        return;
    }
    focusedByMouse_ = event->reason() == Qt::MouseFocusReason;
    txtDBPath_GotFocus();
}

void PathField::mousePressEvent(QMouseEvent* event) {
    QLineEdit::mousePressEvent(event);
    if (focusedByMouse_) {
        // The click that brought the focus would only have placed the cursor and undone the selection.
        focusedByMouse_ = false;
        txtDBPath_GotFocus();
    }
}

void PathField::txtDBPath_OLEDragOver(QDropEvent& event) {
    if (FirstFile(*event.mimeData()).isEmpty()) {
        event.setDropAction(Qt::IgnoreAction);
        event.ignore();
    } else {
        event.acceptProposedAction();
    }
}

void PathField::txtDBPath_OLEDragDrop(QDropEvent& event) {
    const QString path = FirstFile(*event.mimeData());
    if (path.isEmpty()) {
        event.ignore();
        return;
    }
    setText(path);
    event.acceptProposedAction();
}

void PathField::dragEnterEvent(QDragEnterEvent* event) {
    txtDBPath_OLEDragOver(*event);
}

void PathField::dragMoveEvent(QDragMoveEvent* event) {
    txtDBPath_OLEDragOver(*event);
}

void PathField::dropEvent(QDropEvent* event) {
    txtDBPath_OLEDragDrop(*event);
}

}  // namespace tavrel::app
