#include "support/LoopbackServer.h"

#include <cstdio>
#include <stdexcept>
#include <utility>

#ifdef _WIN32
#include <winsock2.h>
#else
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace tavrel::testing {

namespace {

#ifdef _WIN32
using SocketLength = int;
constexpr int kNoSignal = 0;
constexpr int kBothWays = SD_BOTH;

void CloseSocket(std::intptr_t socket) {
    ::closesocket(static_cast<SOCKET>(socket));
}
void StartSockets() {
    static WSADATA data = {};
    static const int started = ::WSAStartup(MAKEWORD(2, 2), &data);
    static_cast<void>(started);
}
#else
using SocketLength = socklen_t;
using SOCKET = int;
constexpr int kNoSignal = MSG_NOSIGNAL;
constexpr int kBothWays = SHUT_RDWR;

void CloseSocket(std::intptr_t socket) {
    ::close(static_cast<SOCKET>(socket));
}
void StartSockets() {}
#endif

/// The other side may be gone: that is what some tests are about.
bool Send(std::intptr_t connection, const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const auto count = ::send(static_cast<SOCKET>(connection), bytes.data() + sent,
                                  static_cast<SocketLength>(bytes.size() - sent), kNoSignal);
        if (count <= 0) {
            return false;
        }
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

std::string ReadHead(std::intptr_t connection) {
    std::string head;
    char byte = 0;
    while (!head.ends_with("\r\n\r\n") && ::recv(static_cast<SOCKET>(connection), &byte, 1, 0) == 1) {
        head += byte;
    }
    return head;
}

std::string HeadOf(const HttpReply& reply) {
    std::string head = "HTTP/1.1 " + std::to_string(reply.status) + " x\r\nConnection: close\r\n";
    if (!reply.location.empty()) {
        head += "Location: " + reply.location + "\r\n";
    }
    if (reply.end == ReplyEnd::Length) {
        head += "Content-Length: " + std::to_string(reply.announced.value_or(reply.body.size())) + "\r\n";
    } else if (reply.end != ReplyEnd::Nothing) {
        head += "Transfer-Encoding: chunked\r\n";
    }
    return head + "\r\n";
}

std::string BodyOf(const HttpReply& reply) {
    if (reply.end == ReplyEnd::Length || reply.end == ReplyEnd::Nothing) {
        return reply.body;
    }
    char size[32] = {};
    static_cast<void>(std::snprintf(size, sizeof size, "%zx\r\n", reply.body.size()));
    return size + reply.body + "\r\n" + (reply.end == ReplyEnd::Chunks ? "0\r\n\r\n" : "");
}

}  // namespace

LoopbackServer::LoopbackServer() {
    StartSockets();
    listener_ = static_cast<Socket>(::socket(AF_INET, SOCK_STREAM, 0));
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    SocketLength size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    const auto listener = static_cast<SOCKET>(listener_);
    if (::bind(listener, generic, size) != 0 || ::listen(listener, 8) != 0 ||
        ::getsockname(listener, generic, &size) != 0) {
        throw std::runtime_error("no loopback server");
    }
    host_ = "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
    thread_ = std::thread([this] { Serve(); });
}

LoopbackServer::~LoopbackServer() {
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    changed_.notify_all();
    // What waits for a connection returns on the one system when told, on the other when the socket is gone.
    ::shutdown(static_cast<SOCKET>(listener_), kBothWays);
#ifdef _WIN32
    CloseSocket(listener_);
    thread_.join();
#else
    thread_.join();
    CloseSocket(listener_);
#endif
}

void LoopbackServer::Answer(const std::string& path, HttpReply reply) {
    const std::lock_guard lock(mutex_);
    replies_[path] = std::move(reply);
}

std::vector<std::string> LoopbackServer::TakeRequests() {
    const std::lock_guard lock(mutex_);
    return std::exchange(requests_, {});
}

void LoopbackServer::Serve() {
    for (;;) {
        const auto connection =
            static_cast<Socket>(::accept(static_cast<SOCKET>(listener_), nullptr, nullptr));
        if (connection < 0) {
            return;
        }
        Converse(connection);
        ::shutdown(static_cast<SOCKET>(connection), kBothWays);
        CloseSocket(connection);
    }
}

HttpReply LoopbackServer::ReplyTo(const std::string& head) {
    const std::lock_guard lock(mutex_);
    requests_.push_back(head);
    const std::size_t path = head.find(' ') + 1;
    const auto found = replies_.find(head.substr(path, head.find(' ', path) - path));
    return found != replies_.end() ? found->second : HttpReply{.status = 404, .body = "99 not here"};
}

void LoopbackServer::Hang() {
    std::unique_lock lock(mutex_);
    const int mine = ++hung_;
    changed_.wait_for(lock, std::chrono::minutes(1), [&] { return ends_ || released_ >= mine; });
}

void LoopbackServer::StopHanging() {
    {
        const std::lock_guard lock(mutex_);
        released_ = hung_;
    }
    changed_.notify_all();
}

void LoopbackServer::Converse(Socket connection) {
    const HttpReply reply = ReplyTo(ReadHead(connection));
    if (reply.hangsFirst) {
        Hang();
        return;
    }
    const std::string body = BodyOf(reply);
    bool heard = Send(connection, HeadOf(reply));
    if (reply.pause.count() == 0) {
        Send(connection, body);
    }
    for (std::size_t i = 0; reply.pause.count() != 0 && heard && i < body.size(); ++i) {
        std::this_thread::sleep_for(reply.pause);
        heard = Send(connection, body.substr(i, 1));
    }
    if (reply.hangsLater) {
        Hang();
    }
}

}  // namespace tavrel::testing
