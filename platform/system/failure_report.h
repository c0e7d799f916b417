// Prints the chain of causes on standard error, for a terminal, cron or the journal.
#pragma once

#include "platform/failure_report.h"

namespace qmx {

class StandardErrorReport : public FailureReport {
 public:
  explicit StandardErrorReport(int descriptor = 2) : descriptor_(descriptor) {}
  void Report(const Error& error) noexcept override;

 private:
  int descriptor_;
};

}  // namespace qmx
