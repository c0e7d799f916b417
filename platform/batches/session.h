// A session whose added rows may wait for each other.
//
// The program's thread fills one batch while the helper thread sends those that are full; when all are full, the
// program waits. The inner session belongs to whoever sends a batch (isSending_), and to the holder of the lock while
// nobody does. While a group is open no row waits.
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

#include "platform/batches/group.h"
#include "platform/database_driver.h"
#include "platform/error.h"

namespace qmx {

class BatchingInsert;

class BatchingDriverSession : public DriverSession {
 public:
  using Clock = std::chrono::steady_clock;
  using Lock = std::unique_lock<std::mutex>;

  static constexpr std::chrono::milliseconds kLongestWait{50};
  static constexpr std::size_t kBatches = 2;          // filled, and sent: a third was no faster, and more than 1 MiB
  static constexpr std::size_t kMostBytes = 1 << 20;  // of texts in one batch

  explicit BatchingDriverSession(std::unique_ptr<DriverSession> inner);
  ~BatchingDriverSession() override;
  BatchingDriverSession(const BatchingDriverSession&) = delete;
  BatchingDriverSession& operator=(const BatchingDriverSession&) = delete;

  std::unique_ptr<DriverStatement> Prepare(const std::string& statement) override;
  std::unique_ptr<DriverStatement> PrepareInsert(const RowInsert& insert) override;
  std::string IntegerParameter() const override { return inner_->IntegerParameter(); }
  TableDescription Describe(const std::string& table) override;
  std::string QuoteIdentifier(const std::string& name) const override { return inner_->QuoteIdentifier(name); }
  std::string System() const override { return inner_->System(); }
  std::string Catalog() override;
  void SelectCatalog(const std::string& name) override;
  void Timeout(std::chrono::seconds limit) override;
  void Begin() override;
  void Rollback() override;
  void Commit() override;
  void Close() override;
  void MayGroup(bool may) override;

  // For the session's statements.
  Lock Locked();   // while nobody sends; rows may wait
  Lock Ready();    // and no row waits; raises what became of those that did
  Lock Settled();  // and no group is open

  // Does what writes nothing. Where that fails, some systems take back the whole transaction.
  template <typename Use>
  decltype(auto) Read(const Lock&, Use&& use) {
    try {
      return use();
    } catch (...) {
      group_.Redo();
      throw;
    }
  }

  // Executes a statement with these values, by itself or in a group; returns how many rows were affected.
  std::int64_t Write(DriverStatement& statement, const std::string& text, std::span<const Variant* const> values);

  // Takes a copy of the row, to be sent soon; false where nothing was added for a while: it is to go out at once.
  bool Waits(BatchingInsert& insert, std::span<const Variant* const> row);
  void Forget(const BatchingInsert& insert);  // it is about to go: sends its rows, and keeps what becomes of them

  DriverSession& Inner() { return *inner_; }

 private:
  // Rows of one statement. Their memory is used again.
  struct Batch {
    BatchingInsert* insert = nullptr;
    std::vector<Variant> values;  // row by row
    std::size_t rows = 0;
    std::size_t bytes = 0;  // of their texts
    Clock::time_point due;
  };

  Batch& Filling() { return batches_[(oldest_ + full_) % kBatches]; }
  void SendAll(Lock& lock);
  void SendOldest(Lock& lock);  // of the full ones; unlocks meanwhile
  void RaiseFailure();
  void StartHelper();
  void SendInTime();  // the helper thread
  void CommitGroup();
  void StopHelper();

  std::unique_ptr<DriverSession> inner_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::array<Batch, kBatches> batches_;  // a ring: the full ones, then the one that is being filled
  std::size_t oldest_ = 0;
  std::size_t full_ = 0;  // not to be filled further
  bool isSending_ = false;
  Clock::time_point lastRow_;
  Group group_;
  bool mayGroup_ = false;
  bool isWithinBegin_ = false;  // which the program called, so that it says what is committed
  std::exception_ptr failure_;  // that nobody has been told of yet
  bool helperSleeps_ = false;   // until it is told of something
  bool stops_ = false;
  std::thread helper_;  // from the first waiting row or the first group on
};

}  // namespace qmx
