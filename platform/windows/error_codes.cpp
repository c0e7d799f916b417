#include <cerrno>

#include "platform/system/system_errors.h"

namespace qmx {

bool MeansFullDisk(int code) noexcept { return code == ENOSPC || code == EFBIG; }

}  // namespace qmx
