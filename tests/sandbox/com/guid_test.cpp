#include "com/guid.h"

#include <gtest/gtest.h>

namespace orvan::test {
namespace {

TEST(AClassId, IsTheVersion5UuidOfItsProgId) {
  EXPECT_EQ(TextOf(GuidOf("ServiceTypes.ServiceTypesManager")), L"{73310C56-84F6-5848-A861-DCF7041263FB}");
  EXPECT_EQ(TextOf(GuidOf("QMXServer20.clsMessHandler")), L"{ABF10E7F-0D09-5CC4-AFA6-157037C1484B}");
}

TEST(AClassId, IsTheSameForAllSpellings) {
  EXPECT_EQ(GuidOf("AUDIT.AuditReader"), GuidOf("audit.auditreader"));
  EXPECT_NE(GuidOf("audit.AuditReader"), GuidOf("audit.AuditWriter"));
}

}  // namespace
}  // namespace orvan::test
