#include "platform/system/standard_error.h"

#include <cerrno>

#include "platform/system/descriptors.h"
#include "platform/system/terminal.h"
#include "platform/system/write_all.h"

namespace qmx {

void WriteToStandardError(std::initializer_list<std::string_view> pieces) noexcept {
  const int errorBefore = errno;
  if (IsLiveTerminal(kStandardError)) WriteAll(kStandardError, kClearLine);
  for (const std::string_view piece : pieces) WriteAll(kStandardError, piece);
  errno = errorBefore;
}

}  // namespace qmx
