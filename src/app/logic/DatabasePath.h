// Paths of the two databases as typed: checking one, and where browsing for one starts.
#pragma once

#include <string>
#include <string_view>

#include "platform/Dialogs.h"

namespace tavrel::app {

/// True for an existing file whose name ends in "mdb", in whatever case.  Otherwise a message has said what
/// is wrong, a failed lookup included, and the field has the focus.
bool ValidateDbPath(const std::string& path, platform::TextField& field, platform::MessageBox& messages);

/// Where browsing for one side starts: its own path, else the other side's.
std::string BrowseStart(const std::string& own, const std::string& other);

/// The folder of a chosen file, without its last separator; empty when the path has none.
std::string FolderOf(std::string_view path);

}  // namespace tavrel::app
