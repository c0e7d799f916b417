// What a copy of the service types finds in the local table, and every state through which it may take the table.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/whole/company.h"

namespace qmx::test::faults {

inline constexpr const char* kTable = "tsmdm030";

using Rows = std::vector<std::string>;  // "KEY|description|procedure|type", by key

enum class Method { Full = 1, Changed = 2 };

// A company with 240 service types, of which 120 have changed since the local table was copied: most were updated, some
// were deleted or are new. The order of the changes is not the order of the keys. One local row is not the ERP's.
class TableStates {
 public:
  TableStates();

  const Company& Erp() const { return company_; }
  const Rows& Old() const { return old_; }

  // In their order, beginning with the old rows, ending with those of a complete copy.
  const std::vector<Rows>& Of(Method method) const { return method == Method::Full ? full_ : changed_; }

 private:
  void ChangeTheErp();
  void ExpectFull();
  void ExpectChanged();

  Company company_;
  Rows old_;
  std::vector<Rows> full_, changed_;
};

}  // namespace qmx::test::faults
