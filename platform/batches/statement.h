// A statement of a batching session that does not add rows through a record set. Waiting rows are sent before it runs.
#pragma once

#include "platform/batches/session.h"

namespace qmx {

class BatchingDriverStatement : public DriverStatement {
 public:
  BatchingDriverStatement(BatchingDriverSession& session, const std::string& text,
                          std::unique_ptr<DriverStatement> inner);
  ~BatchingDriverStatement() override;
  BatchingDriverStatement(const BatchingDriverStatement&) = delete;
  BatchingDriverStatement& operator=(const BatchingDriverStatement&) = delete;

  const std::vector<ColumnDescription>& Columns() const override;
  void Bind(std::size_t parameter, const Variant& value) override;
  bool Step() override;
  Variant Value(std::size_t column) override;
  void ReadRow(std::span<Variant> row) override;
  std::int64_t RowsAffected() const override { return writes_ ? affected_ : inner_->RowsAffected(); }
  void Reset() noexcept override;

 private:
  BatchingDriverSession& session_;
  std::string text_;
  bool writes_;  // rows
  bool isSelect_;
  std::unique_ptr<DriverStatement> inner_;
  // If it writes:
  std::vector<const Variant*> bound_;
  std::int64_t affected_ = 0;
};

}  // namespace qmx
