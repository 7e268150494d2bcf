// The files below a folder, held in memory.
#pragma once

#include <map>
#include <string>

namespace tavrel::testing {

/// Content by path relative to the folder, parts divided by "/".  Folders are not told.
using FolderContent = std::map<std::string, std::string>;

FolderContent ReadFolder(const std::string& folder);
/// Whatever is there goes first.
void WriteFolder(const std::string& folder, const FolderContent& content);

}  // namespace tavrel::testing
