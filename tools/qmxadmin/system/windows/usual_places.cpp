#include "tools/qmxadmin/system/usual_places.h"

#include "platform/system/environment.h"

namespace qmx {

std::string UsualSettingsFile() {
  return EnvironmentVariable("ProgramData").value_or("C:\\ProgramData") + "\\qmxdatacopy\\settings.txt";
}

}  // namespace qmx
