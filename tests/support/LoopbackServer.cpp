#ifndef _WIN32
#include "support/LoopbackServer.h"

#include <arpa/inet.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace tavrel::testing {

namespace {

/// The other side may be gone: that is what some tests are about.
bool Send(int connection, const std::string& bytes) {
    return ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

std::string ReadHead(int connection) {
    std::string head;
    char byte = 0;
    while (!head.ends_with("\r\n\r\n") && ::recv(connection, &byte, 1, 0) == 1) {
        head += byte;
    }
    return head;
}

}  // namespace

LoopbackServer::LoopbackServer() : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener_, generic, size) != 0 || ::listen(listener_, 8) != 0 ||
        ::getsockname(listener_, generic, &size) != 0) {
        throw std::runtime_error("no loopback server");
    }
    host_ = "127.0.0.1:" + std::to_string(::ntohs(address.sin_port));
    thread_ = std::thread([this] { Serve(); });
}

LoopbackServer::~LoopbackServer() {
    ::shutdown(listener_, SHUT_RDWR);
    thread_.join();
    ::close(listener_);
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
        const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) {
            return;
        }
        Converse(connection);
        ::close(connection);
    }
}

HttpReply LoopbackServer::ReplyTo(const std::string& head) {
    const std::lock_guard lock(mutex_);
    requests_.push_back(head);
    const std::size_t path = head.find(' ') + 1;
    const auto found = replies_.find(head.substr(path, head.find(' ', path) - path));
    return found != replies_.end() ? found->second : HttpReply{.status = 404, .body = "99 not here"};
}

void LoopbackServer::Converse(int connection) {
    const HttpReply reply = ReplyTo(ReadHead(connection));
    std::string head = "HTTP/1.1 " + std::to_string(reply.status) + " x\r\nConnection: close\r\n";
    if (!reply.location.empty()) {
        head += "Location: " + reply.location + "\r\n";
    }
    head += "Content-Length: " + std::to_string(reply.announced.value_or(reply.body.size())) + "\r\n\r\n";
    bool heard = Send(connection, head);
    if (reply.pause.count() == 0) {
        Send(connection, reply.body);
        return;
    }
    for (std::size_t i = 0; heard && i < reply.body.size(); ++i) {
        std::this_thread::sleep_for(reply.pause);
        heard = Send(connection, reply.body.substr(i, 1));
    }
}

}  // namespace tavrel::testing
#endif
