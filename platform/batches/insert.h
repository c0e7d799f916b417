// A statement that adds rows, alone or together.
//
// Rows that wait are copies; their memory is used again.
#pragma once

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
  static constexpr std::size_t kMostBytes = 1 << 20;  // of texts that wait

  std::span<const Variant> WaitingRows(std::size_t first, std::size_t count) const;
  void Wait();
  std::size_t SendTogether(std::size_t first, std::size_t count);  // returns how many it did send
  void SendOneByOne(std::size_t first, std::size_t count);

  BatchingSession& session_;
  RowInsert insert_;
  std::unique_ptr<DriverStatement> one_;  // for a row alone
  std::unique_ptr<DriverRows> many_;      // from the first waiting row on
  std::vector<const Variant*> bound_;     // of the row that is being added
  std::vector<Variant> waiting_;          // row by row
  std::size_t waitingRows_ = 0;
  std::size_t waitingBytes_ = 0;
  bool mayWait_ = false;
  std::vector<ColumnDescription> noColumns_;
};

}  // namespace qmx
