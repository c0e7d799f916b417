// Differences as they are told: a line each, or one JSON object each in an array; and a line for every table.
#pragma once

#include <memory>
#include <ostream>

#include "tools/qmxadmin/listing.h"
#include "tools/qmxadmin/verify/comparison.h"

namespace qmx {

// Writes as it is told; kept in memory is nothing.
class VerifyReport : public DifferenceSink {
 public:
  virtual void Begin(const LocalTable& table) = 0;  // what follows is about it; borrowed until the end
  virtual bool End(const ComparedRows& rows) = 0;   // whether there was no difference
  virtual void Close() = 0;                         // after the last table
};

std::unique_ptr<VerifyReport> MakeVerifyReport(std::ostream& out, OutputForm form);

}  // namespace qmx
