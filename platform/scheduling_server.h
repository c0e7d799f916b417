// Which components are the scheduling server's: all others are the ERP's.
#pragma once

#include "platform/names.h"

namespace qmx {

// Allocates nothing, so that a signal handler may ask. Null is not one of them.
inline bool IsSchedulingServers(const char* progId) noexcept {
  const char* place = progId;
  for (const char* prefix = "qmxserver20."; *prefix; ++prefix, ++place) {
    if (!place || FoldLetter(*place) != *prefix) return false;
  }
  return true;
}

}  // namespace qmx
