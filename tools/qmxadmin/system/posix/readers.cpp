#include "tools/qmxadmin/system/readers.h"

#include <poll.h>

namespace qmx {

bool NobodyReads(int descriptor) {
  pollfd pipe{descriptor, POLLOUT, 0};
  return poll(&pipe, 1, 0) == 1 && (pipe.revents & POLLERR) != 0;
}

}  // namespace qmx
