// A small HTTP server on this machine's own address, for one test.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tavrel::testing {

/// How an answer tells where it ends.
enum class ReplyEnd {
    Length,   ///< it says how long it is
    Chunks,   ///< it comes in pieces, the last of which is empty
    NoChunk,  ///< the same without the last
    Nothing   ///< the connection closes
};

struct HttpReply {
    int status = 200;
    std::string body = {};
    std::optional<std::size_t> announced = {};  ///< the length that is promised, where that is not the body's
    std::chrono::milliseconds pause{0};         ///< before each byte of the body
    std::string location = {};                  ///< where a redirection leads
    ReplyEnd end = ReplyEnd::Length;
    bool hangsFirst = false;  ///< not a byte is sent
    bool hangsLater = false;  ///< after the body's bytes, where more are announced, nothing comes
};

/// Answers one request after the other until it goes out of scope.  What has no reply gets 404 and a page.
class LoopbackServer {
  public:
    LoopbackServer();
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    /// "127.0.0.1:" and the port.
    [[nodiscard]] const std::string& Host() const { return host_; }
    /// The reply to a path as it goes over the wire.
    void Answer(const std::string& path, HttpReply reply);
    /// Ends the answer that hangs.
    void StopHanging();
    /// The heads of the requests since the last call.
    std::vector<std::string> TakeRequests();

  private:
    using Socket = std::intptr_t;

    void Serve();
    void Converse(Socket connection);
    HttpReply ReplyTo(const std::string& head);
    /// Waits for a minute, or until the server ends.
    void Hang();

    Socket listener_ = -1;
    std::string host_;
    std::mutex mutex_;
    std::condition_variable changed_;
    int hung_ = 0;
    int released_ = 0;
    bool ends_ = false;
    std::map<std::string, HttpReply> replies_;
    std::vector<std::string> requests_;
    std::thread thread_;
};

}  // namespace tavrel::testing
