// A verification's differences as one JSON array: one object per difference and one per table.
#pragma once

#include "tools/qmxadmin/json_output.h"
#include "tools/qmxadmin/verify/counting_report.h"

namespace qmx {

class JsonReport : public CountingReport {
 public:
  explicit JsonReport(std::ostream& out) : CountingReport(out), array_(out) {}
  void Close() override { array_.End(); }

 protected:
  void Write(const Difference& difference) override;
  void WriteSummary(const ComparedRows& rows) override;

 private:
  JsonArrayWriter array_;
};

}  // namespace qmx
