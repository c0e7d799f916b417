// Forwards bytes between clients on one loopback port and a server on another, until the line is cut. Then both
// connections are reset, and no client can connect.
//
// It can ask, before it passes on a piece that a client sent, what becomes of the line.
//
// It can swallow bytes instead: connections stay open and new ones are accepted, but nothing arrives. It can delay each
// piece, and close half of each connection: the client reads its end, and may go on sending.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace qmx::test {

class TcpProxy {
 public:
  enum class Swallowed { Nothing, Answers, Everything };

  enum class Fate { Stays, Cut, HalfClosed };
  using Question = std::function<Fate(std::string_view)>;  // is called on the proxy's thread

  TcpProxy(std::uint16_t serverPort, Question ask) : TcpProxy(serverPort) { ask_ = std::move(ask); }

  // Swallows from the first piece on that a client sends with this text in it; "" is in none.
  explicit TcpProxy(std::uint16_t serverPort, std::string trigger = "", Swallowed swallowed = Swallowed::Everything)
      : server_(Address(serverPort)), trigger_(std::move(trigger)), atTheTrigger_(swallowed) {
    sockaddr_in own = Address(0);
    socklen_t length = sizeof own;
    if (bind(listener_, reinterpret_cast<sockaddr*>(&own), length) != 0 || listen(listener_, 8) != 0 ||
        getsockname(listener_, reinterpret_cast<sockaddr*>(&own), &length) != 0) {
      close(listener_);
      throw std::runtime_error("no port for the proxy");
    }
    port_ = ntohs(own.sin_port);
    carrier_ = std::thread([this] { Carry(); });
  }
  ~TcpProxy() { Cut(); }
  TcpProxy(const TcpProxy&) = delete;
  TcpProxy& operator=(const TcpProxy&) = delete;

  std::uint16_t Port() const { return port_; }

  void Swallow(Swallowed what) { swallowed_ = what; }  // from now on
  bool Swallows() const { return swallowed_ != Swallowed::Nothing; }

  void Delay(std::chrono::milliseconds each) { delay_ = each; }  // from now on

  void HalfClose() {
    halfCloses_ = true;
    while (halfCloses_) std::this_thread::yield();
  }

  void Cut() {
    isCut_ = true;
    if (carrier_.joinable()) carrier_.join();
  }

 private:
  static int Socket() { return socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0); }

  static sockaddr_in Address(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
  }

  struct Line {
    int client;
    int server;
  };

  void Carry() {
    while (!isCut_) {
      std::vector<pollfd> waiting{{listener_, POLLIN, 0}};
      for (const Line& line : lines_) {
        waiting.push_back({line.client, POLLIN, 0});
        waiting.push_back({line.server, POLLIN, 0});
      }
      poll(waiting.data(), waiting.size(), 10);
      if (halfCloses_) {
        for (const Line& line : lines_) shutdown(line.client, SHUT_WR);
        halfCloses_ = false;
      }
      std::size_t next = 1;
      std::erase_if(lines_, [&](const Line& line) {
        const bool fromClient = waiting[next++].revents != 0;
        const bool fromServer = waiting[next++].revents != 0;
        const bool stays = (!fromClient || PassOn(line.client, line.server, true)) &&
                           (!fromServer || PassOn(line.server, line.client, false));
        if (!stays) Reset(line);
        return !stays;
      });
      if (waiting[0].revents != 0) Accept();
    }
    close(listener_);
    for (const Line& line : lines_) Reset(line);
  }

  void Accept() {
    const Line line{accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC), Socket()};
    if (connect(line.server, reinterpret_cast<const sockaddr*>(&server_), sizeof server_) == 0) {
      lines_.push_back(line);
    } else {
      Reset(line);
    }
  }

  // False once an end has closed.
  bool PassOn(int from, int to, bool isQuestion) {
    std::array<char, 65536> bytes;
    const ssize_t length = recv(from, bytes.data(), bytes.size(), 0);
    const std::string_view piece(bytes.data(), static_cast<std::size_t>(length < 0 ? 0 : length));
    const bool isTrigger = isQuestion && !trigger_.empty() && piece.find(trigger_) != std::string_view::npos;
    if (isTrigger) swallowed_ = atTheTrigger_;
    const Fate fate = isQuestion && ask_ ? ask_(piece) : Fate::Stays;
    if (fate == Fate::HalfClosed) shutdown(from, SHUT_WR);
    if (fate == Fate::Cut) {
      isCut_ = true;
      return false;
    }
    const Swallowed swallowed = swallowed_;
    if (swallowed == Swallowed::Everything || (swallowed == Swallowed::Answers && !isQuestion)) return length > 0;
    std::this_thread::sleep_for(delay_.load());
    for (ssize_t sent = 0; sent < length;) {
      const ssize_t next = send(to, bytes.data() + sent, static_cast<std::size_t>(length - sent), MSG_NOSIGNAL);
      if (next < 0) return false;
      sent += next;
    }
    return length > 0;
  }

  static void Reset(const Line& line) {
    const linger atOnce{1, 0};
    for (const int descriptor : {line.client, line.server}) {
      setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
      close(descriptor);
    }
  }

  sockaddr_in server_;
  std::string trigger_;
  Swallowed atTheTrigger_;
  Question ask_;  // set before there are clients
  std::atomic<Swallowed> swallowed_ = Swallowed::Nothing;
  std::atomic<std::chrono::milliseconds> delay_ = std::chrono::milliseconds(0);
  std::atomic<bool> halfCloses_ = false;
  int listener_ = Socket();
  std::uint16_t port_ = 0;
  std::vector<Line> lines_;
  std::atomic<bool> isCut_ = false;
  std::thread carrier_;
};

}  // namespace qmx::test
