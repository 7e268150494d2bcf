// HTTP as the start-up update needs it: a short text, and a file.  URLs are UTF-8; what is not ASCII is sent
// percent-encoded.  Only an answer with status 200 counts.  The calls block until the server has answered,
// within bounds, and report nothing but success.
#pragma once

#include <cstddef>
#include <string>

namespace tavrel::platform {

/// The first at most `limit` bytes of the resource, fetched from the server and never from a cache.  Empty on
/// any failure: no server, another status, an answer that breaks off before `limit` bytes or its end, 10
/// seconds of silence, 20 seconds in all.
std::string FetchBeginning(const std::string& url, std::size_t limit);

/// Downloads the resource into the file, replacing one that is there, whose permissions stay.  False on
/// failure; the file is then as it was.  Failures are also an empty answer, one that does not tell where it
/// ends, more than 256 MB, 10 seconds of silence and 5 minutes in all.  While it lasts the bytes stand
/// beside, in `path`.part.
bool DownloadToFile(const std::string& url, const std::string& path);

/// Removes what a download to the file left when the program was ended in the middle of it.  What another
/// running program is downloading stays.
void RemoveBrokenDownload(const std::string& path);

}  // namespace tavrel::platform
