#include "platform/odbc/driver_manager.h"

#include <odbcinst.h>

namespace qmx {

const bool kNarrowTextsAreUnchanged = true;

// The driver manager reads such a file for narrow connection texts only.
std::string ReadDataSourceFile(const std::string& file) {
  std::string pairs(16 * 1024, '\0');
  WORD length = 0;
  const BOOL isRead =
      SQLReadFileDSN(file.c_str(), "ODBC", nullptr, pairs.data(), static_cast<WORD>(pairs.size()), &length);
  pairs.resize(isRead ? length : 0);
  return pairs;
}

}  // namespace qmx
