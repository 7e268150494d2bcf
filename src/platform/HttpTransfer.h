// One answer of an HTTP server, in pieces as it arrives.  What is made of it is the same on every system.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace tavrel::platform {

inline constexpr const char* kHttpAgent = "VB OpenUrl";

/// How long a server is waited for, so that none that hangs holds the program up for good.
struct HttpPatience {
    std::chrono::seconds silence;  ///< until it can be connected to, and between one byte and the next
    std::chrono::seconds whole;    ///< from the call to the last byte
};

/// Takes a piece of the answer; false ends the transfer.
using HttpTaker = std::function<bool(const char* bytes, std::size_t size)>;

struct HttpAnswer {
    bool isWhole = false;        ///< all of an answer with status 200 has arrived and been taken
    bool saysItsLength = false;  ///< one that does not may have been cut off without a trace
};

/// Fetches the URL from the server, never from a cache; redirections are followed.  `take` gets the bytes of
/// an answer with status 200 alone; an Error that it throws comes out as it is.
HttpAnswer FetchFromServer(const std::string& url, HttpPatience patience, const HttpTaker& take);

/// What an answer's bytes say: on Windows they are in the system's code page, elsewhere they stay as they
/// are.
std::string TextOfBytes(const std::string& bytes);

}  // namespace tavrel::platform
