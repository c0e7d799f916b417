// A statement that adds rows, alone or together.
#pragma once

#include <span>

#include "platform/batches/session.h"

namespace qmx {

class BatchingInsert : public DriverStatement, public RowSink {
 public:
  BatchingInsert(BatchingDriverSession& session, RowInsert insert);
  ~BatchingInsert() override;
  BatchingInsert(const BatchingInsert&) = delete;
  BatchingInsert& operator=(const BatchingInsert&) = delete;

  const std::vector<ColumnDescription>& Columns() const override { return noColumns_; }
  void Bind(std::size_t parameter, const Variant& value) override;
  std::size_t BindRow(std::span<const Variant> row) override;
  bool Step() override;
  Variant Value(std::size_t) override { return Variant::Null(); }
  std::int64_t RowsAffected() const override { return affected_; }
  void Reset() noexcept override { mayWait_ = false; }
  void MayWait() noexcept override { mayWait_ = true; }

  std::size_t MostRows() const override { return mostRows_; }
  void AskMostRows() override { mostRows_ = many_->Most(); }  // not while a batch is sent
  void Send(std::span<const Variant> values) override;        // on any thread
  bool IsUnheeded() const override { return insert_.isUnheeded; }

 private:
  std::int64_t WriteAlone();
  void SendAllButRefused(std::span<const Variant> values);
  bool CommitTogether(std::span<const Variant> values);       // returns whether all rows are saved, else none is
  std::size_t SendTogether(std::span<const Variant> values);  // returns how many rows it sent
  void SendOneByOne(std::span<const Variant> values);
  void SendAlone(std::span<const Variant> row);
  void ExecuteWith(std::span<const Variant> row);

  BatchingDriverSession& session_;
  RowInsert insert_;
  std::string text_;
  std::unique_ptr<DriverStatement> one_;  // for a row alone
  std::unique_ptr<DriverRows> many_;      // prepared for the first row that may wait
  std::vector<const Variant*> bound_;     // the row that is being added
  std::size_t mostRows_ = 0;
  bool mayWait_ = false;
  std::int64_t affected_ = 0;
  std::vector<ColumnDescription> noColumns_;
};

}  // namespace qmx
