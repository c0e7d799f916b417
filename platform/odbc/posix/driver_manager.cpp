#include "platform/odbc/driver_manager.h"

#include <odbcinst.h>

namespace qmx {

const bool kNarrowTextsAreUnchanged = true;

const char* const kCheckNames = "Check Driver= against the names in odbcinst.ini, or DSN= against those in odbc.ini.";

std::string ReadDriverManagersFile(const std::string& name) {
  std::string pairs(16 * 1024, '\0');
  WORD length = 0;
  const BOOL isRead =
      SQLReadFileDSN(name.c_str(), "ODBC", nullptr, pairs.data(), static_cast<WORD>(pairs.size()), &length);
  pairs.resize(isRead ? length : 0);
  return pairs;
}

}  // namespace qmx
