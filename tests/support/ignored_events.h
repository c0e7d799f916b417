// Events of a copy that nobody hears.
#pragma once

#include "copy/clsDataCopy.h"

namespace qmx::test {

class IgnoredEvents : public DataCopyEvents {
 public:
  void DataCopyStarted(Variant, Variant) override {}
  void DataCopyError(Variant, Variant, Variant, Variant) override {}
  void DataCopyComplete(Variant, Variant, Variant, Variant, Variant) override {}
  void DataCopyAlreadyInProgress(Variant, Variant) override {}
  void DataCopydone() override {}
};

}  // namespace qmx::test
