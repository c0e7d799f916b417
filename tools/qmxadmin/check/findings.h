// The results of a check. Prints each result on a line at once, or all of them as JSON at the end.
#pragma once

#include "tools/qmxadmin/check/finding_sink.h"
#include "tools/qmxadmin/listing.h"

namespace qmx {

class Findings : public FindingSink {
 public:
  Findings(OutputForm form, bool quiet);

  void Add(const Finding& finding) override;

  bool AnyWrong() const { return anyWrong_; }
  void End();  // once, after the last result

 private:
  OutputForm form_;
  bool quiet_;  // prints failed checks only
  bool anyWrong_ = false;
  Listing listing_;
};

}  // namespace qmx
