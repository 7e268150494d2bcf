// Message boxes of the window.
#pragma once

#include <QWidget>

#include "platform/Dialogs.h"

namespace tavrel::app {

class QtMessageBox : public platform::MessageBox {
  public:
    /// The window that a box stands over; not owned.
    explicit QtMessageBox(QWidget& window) : window_(window) {}
    platform::MessageAnswer Show(const platform::Message& message) override;

  private:
    QWidget& window_;
};

}  // namespace tavrel::app
