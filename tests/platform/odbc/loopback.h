// Connections over the loopback, with both of their ends.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace qmx::test {

// A server that accepts.
class LoopbackServer {
 public:
  LoopbackServer() {
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address_;
    if (bind(listener_, reinterpret_cast<sockaddr*>(&address_), length) != 0 || listen(listener_, 8) != 0 ||
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address_), &length) != 0) {
      throw std::runtime_error("no port for a server");
    }
  }
  ~LoopbackServer() { close(listener_); }
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  const sockaddr_in& Address() const { return address_; }
  int Accept() const { return accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC); }

 private:
  int listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address_{};
};

class LoopbackConnection {
 public:
  explicit LoopbackConnection(const LoopbackServer& server) {
    const sockaddr_in address = server.Address();
    if (connect(client_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      throw std::runtime_error("no connection to the server");
    }
    server_ = server.Accept();
  }
  ~LoopbackConnection() {
    close(client_);
    close(server_);
  }
  LoopbackConnection(const LoopbackConnection&) = delete;
  LoopbackConnection& operator=(const LoopbackConnection&) = delete;

  int Client() const { return client_; }

  // Whether bytes still pass in both directions.
  bool Stands() const { return Passes(client_, server_) && Passes(server_, client_); }
  bool HasEndedForBoth() const {
    char byte;
    return recv(client_, &byte, 1, MSG_DONTWAIT) == 0 && recv(server_, &byte, 1, 0) == 0;
  }

 private:
  static bool Passes(int from, int to) {
    char byte = 'x';
    return send(from, &byte, 1, MSG_NOSIGNAL) == 1 && recv(to, &byte, 1, 0) == 1;
  }

  int client_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  int server_ = -1;
};

}  // namespace qmx::test
