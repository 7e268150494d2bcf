// Version texts of program files.  They are found by scanning the raw version resource as text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Dialogs.h"

namespace tavrel::modFile {

/// Thirteen texts, each a key, ": " and its value ("Not specified" when the resource has no such key); the
/// last is the language, or the bare key when there is no block of texts.  Empty when the file has no version
/// resource or cannot be read.  An error is shown, and the function goes on behind it.
std::vector<std::string> GetFileVerInfo(const std::string& path, platform::MessageBox& messages);

/// The file version: up to its last ".", with `normalizeLast` followed by that and the last component without
/// leading zeros.  Empty on any error (a file without version resource is one), which is shown unless
/// `silent`.
std::string GetFileVer(const std::string& path, bool normalizeLast, bool silent,
                       platform::MessageBox& messages);

/// The English name of the language whose identifier the first four characters are; empty for an unknown one.
std::string GetLanguageName(std::string_view code);

}  // namespace tavrel::modFile
