// Tells the scheduling server's components from the ERP's, which all others are.
#pragma once

#include "platform/names.h"

namespace qmx {

// Allocates nothing, so signal handlers may call it. Null is not one of them.
inline bool IsSchedulingServers(const char* progId) noexcept {
  const char* place = progId;
  for (const char* prefix = "qmxserver20."; *prefix; ++prefix, ++place) {
    if (!place || FoldLetter(*place) != *prefix) return false;
  }
  return true;
}

}  // namespace qmx
