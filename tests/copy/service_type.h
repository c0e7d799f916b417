// Service types as the scripted ERP gives them.
#pragma once

#include "tests/support/scripted_components.h"

namespace qmx::test {

inline constexpr const char* kServiceTypesManager = "ServiceTypes.ServiceTypesManager";
inline constexpr const char* kServiceTypesRecord = "ServiceTypes.ServiceTypes";

inline Getters ServiceType(const std::string& code, const std::string& description = "",
                           const std::string& procedure = "", const std::string& availability = "") {
  return {{"getServiceType", code},
          {"getServiceTypeDescription", description},
          {"getServiceProcedure", procedure},
          {"getavailabilityType", availability}};
}

// What the audit reader gives of a deleted service type: its key.
inline Getters DeletedServiceType(const std::string& code) { return {{"getServiceType", code}}; }

}  // namespace qmx::test
