#include "platform/odbc/driver_manager.h"

namespace qmx {

const bool kNarrowTextsAreUnchanged = false;

const char* const kCheckNames = "Check Driver= and DSN= against the names in the 64-bit ODBC administrator (odbcad32).";

std::string ReadDriverManagersFile(const std::string&) { return {}; }

}  // namespace qmx
