// The ProgIDs of all components that the copies use.
#pragma once

#include <string>
#include <vector>

namespace qmx {

inline constexpr const char* kAuditAndDates[] = {"audit.auditCriteria", "audit.period",       "audit.Parameter",
                                                 "audit.AuditReader",   "audit.RecordStatus", "java:java.util.Date"};
inline constexpr const char* kSchedulingServer[] = {"QMXServer20.clsMessHandler", "QMXServer20.ClientRequests"};

// Each once: those of the tables first, then the ones above.
std::vector<std::string> UsedProgIds();

}  // namespace qmx
