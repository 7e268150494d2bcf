// A database file that this process holds for changing, and those of the same process who read it meanwhile.
//
// The lock of the one who changes keeps everybody out, this process included.  A reader of this process is
// given a view of the held file instead: its content as it was when the view was opened, whatever is written
// afterwards.  Not for use from several threads at once.
#pragma once

#include <memory>
#include <string>

#include "platform/File.h"

namespace tavrel::jet {

/// The file, known from now on to OpenView by its path.  It stays open, and locked, until the file that is
/// returned and all views are gone.
std::unique_ptr<platform::File> ShareWithReaders(std::unique_ptr<platform::File> file,
                                                 const std::string& path);

/// A view, for reading only, of a file that this process holds under any name of it; null when it holds none.
std::unique_ptr<platform::File> OpenView(const std::string& path);

}  // namespace tavrel::jet
