#include "platform/system/installed_files.h"

#include <gtest/gtest.h>

namespace qmx {
namespace {

TEST(InstalledFiles, AreWhereTheBuildSays) {
  EXPECT_EQ(InstalledPath("/usr/lib/qmxdatacopy/components"), "/usr/lib/qmxdatacopy/components");
}

}  // namespace
}  // namespace qmx
