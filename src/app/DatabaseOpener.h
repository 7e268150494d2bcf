// Opening a database in the program that belongs to it, and saying so where there is none.
#pragma once

#include <string>

#include <QObject>

#include "platform/Dialogs.h"

namespace tavrel::app {

class DatabaseOpener : public QObject {
  public:
    /// The messages must outlive the opener.
    explicit DatabaseOpener(platform::MessageBox& messages) : messages_(messages) {}

    /// Asks the system to open the file and does not wait.  When the system answers, now or a little later,
    /// that it has nothing to open it with, a message says so.
    void Open(const std::string& path);

  private:
    void Watch(const std::string& path);
    void TellNoProgram(const std::string& path);

    platform::MessageBox& messages_;
};

}  // namespace tavrel::app
