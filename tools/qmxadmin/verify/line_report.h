// A verification's differences as text, one line each, and a summary line per table.
#pragma once

#include "tools/qmxadmin/verify/counting_report.h"

namespace qmx {

class LineReport : public CountingReport {
 public:
  LineReport(std::ostream& out, bool quiet) : CountingReport(out), quiet_(quiet) {}
  void Close() override {}

 protected:
  void Write(const Difference& difference) override;
  void WriteSummary(const ComparedRows& rows) override;

 private:
  bool quiet_;  // leaves out the summary of tables without a difference
};

}  // namespace qmx
