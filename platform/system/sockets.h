// Knows which sockets a driver connects, as opposed to those of other libraries in the process.
//
// On a POSIX system this program defines its own connect(), which every library of the process calls instead of the C
// library's. It notes the socket if its thread is recording, and then connects it. Drivers that do not call connect()
// have no sockets here. On other systems nothing is recorded.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

namespace qmx {

class Sockets {
 public:
  // Records the sockets that this thread connects, until it is destroyed. A thread has one recording at a time.
  class Recording {
   public:
    explicit Recording(Sockets& sockets);
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;
  };

  void Add(int descriptor) noexcept;

  // Ends the connections that are still open, in both directions, so that waiting calls return with an error. The
  // descriptors stay open. Any thread may call this.
  void ShutDown();

 private:
  struct Socket {
    int descriptor;
    std::uint64_t device;  // device and inode show whether the descriptor still is this socket
    std::uint64_t inode;
  };

  std::mutex mutex_;
  std::vector<Socket> sockets_;
};

}  // namespace qmx
