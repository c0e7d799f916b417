// A statement that adds rows, alone or together.
#pragma once

#include <span>

#include "platform/batches/session.h"

namespace qmx {

class BatchingInsert : public DriverStatement {
 public:
  BatchingInsert(BatchingDriverSession& session, RowInsert insert);
  ~BatchingInsert() override;
  BatchingInsert(const BatchingInsert&) = delete;
  BatchingInsert& operator=(const BatchingInsert&) = delete;

  const std::vector<ColumnDescription>& Columns() const override { return noColumns_; }
  void Bind(std::size_t parameter, const Variant& value) override;
  bool Step() override;
  Variant Value(std::size_t) override { return Variant::Null(); }
  std::int64_t RowsAffected() const override { return 1; }
  void Reset() noexcept override { mayWait_ = false; }
  void MayWait() noexcept override { mayWait_ = true; }

  std::size_t Width() const { return bound_.size(); }  // values of one row
  std::size_t MostRows() const { return mostRows_; }   // of one batch

  // While nobody sends: a batch may have shown that others are better smaller.
  void AskMostRows() { mostRows_ = many_->Most(); }

  // Sends rows whose values follow each other, on whichever thread the session says.
  void Send(std::span<const Variant> values);

 private:
  std::size_t SendTogether(std::span<const Variant> values);  // returns how many rows it did send
  void SendOneByOne(std::span<const Variant> values);

  BatchingDriverSession& session_;
  RowInsert insert_;
  std::string text_;
  std::unique_ptr<DriverStatement> one_;  // for a row alone
  std::unique_ptr<DriverRows> many_;      // from the first row on that may wait
  std::vector<const Variant*> bound_;     // of the row that is being added
  std::size_t mostRows_ = 0;
  bool mayWait_ = false;
  std::vector<ColumnDescription> noColumns_;
};

}  // namespace qmx
