// A session whose added rows may wait for each other.
//
// The program's thread and the helper thread take turns: whoever uses the inner session holds the lock.
#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

#include "platform/database_driver.h"

namespace qmx {

class BatchingInsert;

class BatchingSession : public DriverSession {
 public:
  using Clock = std::chrono::steady_clock;
  using Lock = std::unique_lock<std::mutex>;

  static constexpr std::chrono::milliseconds kLongestWait{50};

  explicit BatchingSession(std::unique_ptr<DriverSession> inner);
  ~BatchingSession() override;
  BatchingSession(const BatchingSession&) = delete;
  BatchingSession& operator=(const BatchingSession&) = delete;

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

  // For the session's statements.
  Lock Locked() { return Lock(mutex_); }
  Lock Ready();                               // locked, with no row waiting; raises what became of those that did
  Lock ReadyFor(const BatchingInsert& next);  // the same, but rows of that statement may go on waiting
  bool ShouldWait();                          // whether the next row comes soon after the one before; under the lock
  void Waits(BatchingInsert& rows);           // it has its first waiting row; under the lock
  void SendNow();                             // under the lock
  void Forget(BatchingInsert& rows);          // it is about to go: sends its rows, and keeps what becomes of them

  DriverSession& Inner() { return *inner_; }

 private:
  void RaiseFailure();
  void SendWhenDue();  // the helper thread
  void StopHelper();

  std::unique_ptr<DriverSession> inner_;
  std::mutex mutex_;
  std::condition_variable changed_;
  BatchingInsert* waiting_ = nullptr;  // the one whose rows wait
  Clock::time_point due_;
  Clock::time_point lastRow_;
  std::exception_ptr failure_;  // that nobody has been told of yet
  bool stops_ = false;
  std::thread helper_;  // from the first waiting row on
};

}  // namespace qmx
