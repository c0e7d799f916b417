// The failures that a run record reports.
#pragma once

#include <string>
#include <vector>

#include "platform/error.h"
#include "platform/failure_report.h"

namespace qmx::test {

class KeptFailures : public FailureReport {
 public:
  void Report(const Error& error) noexcept override { descriptions.push_back(DescribeChain(error)); }
  std::vector<std::string> descriptions;
};

}  // namespace qmx::test
