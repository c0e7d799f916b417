#include "tools/qmxadmin/system/usual_places.h"

namespace qmx {

std::string UsualSettingsFile() { return "/etc/default/qmxdatacopy"; }

}  // namespace qmx
