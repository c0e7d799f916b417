#include "erp/enumeration.h"

namespace orvan {

bool Enumeration::OnRow() {
  if (place_ == Place::Before) place_ = rows_.Step() ? Place::OnRow : Place::AtEnd;
  return place_ == Place::OnRow;
}

void Enumeration::HasMoreElements(Arguments, Result result) { result.SetBoolean(OnRow()); }

void Enumeration::NextElement(Arguments, Result result) {
  if (!OnRow())
    throw Failure(QMX_E_INVALID_CALL, kName,
                  "There is no further record of " + std::string(table_.code) + ". Ask hasMoreElements first.");
  if (!last_ || last_->IsShared()) last_ = Ref(new Record(table_));
  last_->Fill(rows_);
  place_ = Place::Before;
  Return(result, last_);
}

}  // namespace orvan
