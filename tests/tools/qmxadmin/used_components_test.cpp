#include "tools/qmxadmin/used_components.h"

#include <gmock/gmock.h>

#include "platform/components/manifest.h"

namespace qmx::test {
namespace {

using testing::Contains;

TEST(UsedComponents, AreThoseOfTheTablesTheAuditTrailTheDatesAndTheSchedulingServer) {
  const std::vector<std::string> used = UsedProgIds();
  for (const char* progId :
       {"ServiceTypes.ServiceTypesManager", "ServiceTypes.ServiceTypes", "Calendars.CalendarManager",
        "audit.AuditReader", "java:java.util.Date", "QMXServer20.ClientRequests"})
    EXPECT_THAT(used, Contains(progId).Times(1));
}

TEST(UsedComponents, AreAllThatTheSandboxServesAndTheDate) {
  std::vector<std::string> served = {"java:java.util.Date"};
  for (const Manifest& manifest : ReadManifestFolder(SANDBOX_COMPONENTS).manifests)
    served.insert(served.end(), manifest.progIds.begin(), manifest.progIds.end());
  EXPECT_THAT(UsedProgIds(), testing::UnorderedElementsAreArray(served));
}

}  // namespace
}  // namespace qmx::test
