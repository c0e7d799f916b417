// A datagram socket that plays the system log.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>
#include <string>

namespace qmx::test {

class SystemLog {
 public:
  explicit SystemLog(const std::string& path) : descriptor_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    if (bind(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      throw std::runtime_error("no socket at " + path);
    }
  }
  ~SystemLog() { close(descriptor_); }
  SystemLog(const SystemLog&) = delete;
  SystemLog& operator=(const SystemLog&) = delete;

  // The next entry; "" when there is none.
  std::string Receive() {
    char buffer[65536];
    const ssize_t length = recv(descriptor_, buffer, sizeof buffer, MSG_DONTWAIT);
    return length < 0 ? std::string() : std::string(buffer, static_cast<std::size_t>(length));
  }

 private:
  int descriptor_;
};

}  // namespace qmx::test
