// A small HTTP server on this machine's own address, for one test.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tavrel::testing {

struct HttpReply {
    int status = 200;
    std::string body = {};
    std::optional<std::size_t> announced = {};  ///< the length that is promised, where that is not the body's
    std::chrono::milliseconds pause{0};         ///< before each byte of the body
    std::string location = {};                  ///< where a redirection leads
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
    /// The heads of the requests since the last call.
    std::vector<std::string> TakeRequests();

  private:
    void Serve();
    void Converse(int connection);
    HttpReply ReplyTo(const std::string& head);

    int listener_ = -1;
    std::string host_;
    std::mutex mutex_;
    std::map<std::string, HttpReply> replies_;
    std::vector<std::string> requests_;
    std::thread thread_;
};

}  // namespace tavrel::testing
