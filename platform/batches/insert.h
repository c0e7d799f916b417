// A statement that adds rows, alone or together.
//
// Rows that wait are copies; their memory is used again. They go out by halves: as many as the largest statement takes,
// then half as many, down to one, so that there are few statements to prepare.
#pragma once

#include <array>
#include <span>

#include "platform/batches/session.h"

namespace qmx {

class BatchingInsert : public DriverStatement {
 public:
  BatchingInsert(BatchingSession& session, RowInsert insert);
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

  // Sends the rows that wait; under the session's lock. Afterwards none waits, whatever it raises.
  void Send();

 private:
  static constexpr std::size_t kSizes = 8;               // statements for 1, 2, 4, ... 128 rows
  static constexpr std::size_t kMostParameters = 30000;  // the systems take 32766 at least

  std::span<const Variant> WaitingRow(std::size_t row) const;
  void Wait();
  void SendTogether(std::size_t first, std::size_t size);  // a power of two
  void SendOneByOne(std::size_t first, std::size_t count);
  DriverStatement& StatementFor(std::size_t size);
  void Run(DriverStatement& statement);

  BatchingSession& session_;
  RowInsert insert_;
  std::size_t mostRows_;
  std::array<std::unique_ptr<DriverStatement>, kSizes> statements_;
  std::vector<const Variant*> bound_;  // of the row that is being added
  std::vector<Variant> waiting_;       // row by row
  std::size_t waitingRows_ = 0;
  bool mayWait_ = false;
  std::vector<ColumnDescription> noColumns_;
};

}  // namespace qmx
