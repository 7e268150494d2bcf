// The two network operations of the update check.
#pragma once

#include <string>

namespace tavrel::modAutoUpdateV1_Launcher {

/// The first at most 20 bytes of the resource as text; empty on any failure, of which nothing is reported.
std::string OpenUrl(const std::string& url);

/// Downloads the URL into the file, replacing one that is there.  False on failure, which is not reported.
bool DownloadFile(const std::string& url, const std::string& path);

}  // namespace tavrel::modAutoUpdateV1_Launcher
