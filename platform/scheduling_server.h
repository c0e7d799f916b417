// Distinguishes the scheduling server's components from the ERP's. All other components are the ERP's.
#pragma once

#include "platform/names.h"

namespace qmx {

// Allocates nothing, so signal handlers may call it. False for null.
inline bool IsSchedulingServers(const char* progId) noexcept {
  const char* place = progId;
  for (const char* prefix = "qmxserver20."; *prefix; ++prefix, ++place) {
    if (!place || FoldLetter(*place) != *prefix) return false;
  }
  return true;
}

}  // namespace qmx
