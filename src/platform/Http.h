// HTTP as the start-up update needs it: a short text, and a file.  URLs are UTF-8; what is not ASCII is sent
// percent-encoded.  Both calls block until the server has answered, and report nothing but success.
#pragma once

#include <cstddef>
#include <string>

namespace tavrel::platform {

/// The first at most `limit` bytes of the resource, fetched from the server and never from a cache.  Empty on
/// any failure: no server, an HTTP error, an answer that breaks off before `limit` bytes or its end.
std::string FetchBeginning(const std::string& url, std::size_t limit);

/// Downloads the resource into the file, replacing one that is there.  False on failure; outside Windows the
/// file is then as it was.
bool DownloadToFile(const std::string& url, const std::string& path);

}  // namespace tavrel::platform
