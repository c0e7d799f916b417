// The sockets that a driver connects: exactly those, and none that others open in this process meanwhile.
//
// This program has a connect() of its own, which every library of the process calls in place of the C library's. It
// notes the socket where its thread is recording, and connects it as before. Drivers that do not call connect() have
// no sockets here.
#pragma once

#include <sys/types.h>

#include <mutex>
#include <vector>

namespace qmx {

class Sockets {
 public:
  // Notes what this thread connects, until it ends. A thread has one recording at a time.
  class Recording {
   public:
    explicit Recording(Sockets& sockets);
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;
  };

  void Add(int descriptor) noexcept;

  // Ends the connections of those that are still open, in both directions: whoever waits for one is freed with an
  // error. The descriptors stay open. From any thread.
  void ShutDown();

 private:
  struct Socket {
    int descriptor;
    dev_t device;  // device and inode tell whether the descriptor is still this socket's
    ino_t inode;
  };

  std::mutex mutex_;
  std::vector<Socket> sockets_;
};

}  // namespace qmx
