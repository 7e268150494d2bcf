// Asking for a file's name.
#pragma once

#include <string>

#include <QWidget>

namespace tavrel::app {

struct FileQuestion {
    std::string name;    ///< what the name field begins with; may be a whole path
    std::string folder;  ///< where to begin
    std::string filter;  ///< "MDB File (mdb) (*.mdb *.MDB)"
};

class FileChooser {
  public:
    virtual ~FileChooser() = default;
    /// The chosen path; empty when the user cancels.
    virtual std::string AskOpen(const FileQuestion& question) = 0;
    /// Asks before an existing file is overwritten.
    virtual std::string AskSave(const FileQuestion& question) = 0;
};

/// The platform's own dialogs.
class QtFileChooser : public FileChooser {
  public:
    /// The window that a dialog stands over; not owned.
    explicit QtFileChooser(QWidget& window) : window_(window) {}
    std::string AskOpen(const FileQuestion& question) override;
    std::string AskSave(const FileQuestion& question) override;

  private:
    QWidget& window_;
};

}  // namespace tavrel::app
