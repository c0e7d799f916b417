#include "tools/qmxadmin/copy/plan.h"

#include <gtest/gtest.h>

namespace qmx::test {
namespace {

TEST(ACopyPlan, GoesThroughTheTablesInTheirOrder) {
  CopyPlan plan({"tsmdm030", "tccom130"});
  EXPECT_EQ(plan.Next(), 0U);
  EXPECT_EQ(plan.Next(), 1U);
  EXPECT_EQ(plan.Next(), std::nullopt);
}

TEST(ACopyPlan, HasCalendarsWaitForEmployees) {
  CopyPlan plan({"tcccp030", "tsmdm140", "tcccp030=E1=E", "tsmdm030"});
  EXPECT_EQ(plan.Next(), 1U);
  EXPECT_EQ(plan.Next(), 3U);
  EXPECT_EQ(plan.Next(), std::nullopt);
  plan.Ended(3, true);
  EXPECT_EQ(plan.Next(), std::nullopt);
  plan.Ended(1, true);
  EXPECT_EQ(plan.Next(), 0U);
  EXPECT_EQ(plan.Next(), 2U);
  EXPECT_EQ(plan.Next(), std::nullopt);
}

TEST(ACopyPlan, LeavesCalendarsOutIfEmployeesWereNotCopied) {
  CopyPlan plan({"tsmdm140", "tcccp030"});
  EXPECT_EQ(plan.Next(), 0U);
  plan.Ended(0, false);
  EXPECT_EQ(plan.Next(), std::nullopt);
}

TEST(ACopyPlan, HasCalendarsWaitForNobodyIfNoEmployeesAreCopied) {
  CopyPlan plan({"tcccp030"});
  EXPECT_EQ(plan.Next(), 0U);
}

}  // namespace
}  // namespace qmx::test
