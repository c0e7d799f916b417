// The report of a verification. Prints each difference on one line, or as a JSON array, followed by one summary line
// per table.
#pragma once

#include <memory>
#include <ostream>

#include "tools/qmxadmin/listing.h"
#include "tools/qmxadmin/verify/comparison.h"

namespace qmx {

// Writes each difference at once. Nothing is kept in memory.
class VerifyReport : public DifferenceSink {
 public:
  virtual void Begin(const LocalTable& table) = 0;  // borrowed until End
  virtual bool End(const ComparedRows& rows) = 0;   // returns whether the table has no difference
  virtual void Close() = 0;                         // after the last table
};

// A quiet report has no summary lines of tables without a difference.
std::unique_ptr<VerifyReport> MakeVerifyReport(std::ostream& out, OutputForm form, bool quiet = false);

}  // namespace qmx
