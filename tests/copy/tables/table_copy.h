// What the tests of all tables ask of a copy.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/copy_rig.h"

namespace qmx::test {

using testing::ElementsAre;
using testing::IsEmpty;

// The columns that were written on the engine's record set, in order.
std::string ColumnsWritten(const CallLog& calls);

// The members that were called on one object, in order.
std::string MembersCalled(const CallLog& calls, const std::string& object);

// What the audit criteria were given: parameters ("cstp" "" "ZZZ") and output fields, in order.
std::vector<std::string> Criteria(const CallLog& calls);

// The calls of the manager, and the SQL texts and tables that reached the database but for tstables.
std::vector<std::string> ManagerCalls(const CallLog& calls);
std::vector<std::string> SqlTexts(const CallLog& calls);

// Number and texts of the error that a copy raises when its manager fails with error 500.
std::string FailureOfFullCopy(const std::string& table, const std::string& managerProgId);
std::string FailureOfChangedCopy(const std::string& table, const std::string& managerProgId);

// Runs one changed copy with these audit entries.
void RunChanged(CopyRig& rig, const std::string& table, const std::string& recordProgId,
                std::vector<AuditEntry> entries);

}  // namespace qmx::test
