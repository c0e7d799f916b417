// A session that sends added rows in batches and commits written rows in groups.
//
// The program's thread fills one batch while the helper thread sends those that have ended. When all have ended, the
// program waits. The inner session belongs to the thread that sends a batch (isSending_), and to the holder of the lock
// when nobody sends. While a group is open no row waits.
#pragma once

#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <span>
#include <utility>

#include "platform/batches/group.h"
#include "platform/batches/helper_thread.h"
#include "platform/batches/retries.h"
#include "platform/batches/row_queue.h"
#include "platform/database_driver.h"
#include "platform/error.h"
#include "platform/steady_clock.h"

namespace qmx {

class BatchingInsert;

class BatchingDriverSession : public DriverSession {
 public:
  using Lock = SteadyClock::Lock;

  explicit BatchingDriverSession(std::unique_ptr<DriverSession> inner, SteadyClock& clock = SteadyClock::OfTheSystem(),
                                 RetryCount* allRetries = nullptr);  // borrowed
  BatchingDriverSession(const BatchingDriverSession&) = delete;
  BatchingDriverSession& operator=(const BatchingDriverSession&) = delete;

  std::unique_ptr<DriverStatement> Prepare(const std::string& statement) override;
  std::unique_ptr<DriverStatement> PrepareInsert(const RowInsert& insert) override;
  std::string IntegerParameter() const override { return inner_->IntegerParameter(); }
  bool KeepsMomentsAsTexts() const override { return inner_->KeepsMomentsAsTexts(); }
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
  void EnableSavepoints() override;
  bool CanRollBack(const std::string& table) override;
  bool LocksWholeDatabase() const override { return inner_->LocksWholeDatabase(); }
  void MayGroup(bool may) override;
  void Retry(const std::function<void()>& work) override;
  std::int64_t Retries() const override { return retries_.Count(); }

  // For the session's statements.
  Lock Locked();   // waits until no batch is being sent; rows may wait
  Lock Ready();    // sends all rows, and raises the error of a refused one
  Lock Settled();  // also commits the open group

  // Runs what writes nothing. When that fails, some systems roll back the whole transaction, so the group is redone.
  template <typename Use>
  decltype(auto) Read(const Lock&, Use&& use) {
    try {
      return use();
    } catch (...) {
      group_.Redo();
      throw;
    }
  }

  // The same for what can be run again if the database asks for it.
  template <typename Use>
  decltype(auto) ReadAgain(const Lock& lock, Use&& use) {
    return Again([&]() -> decltype(auto) { return Read(lock, use); });
  }

  // Runs it, and again if the database asks for it. Within a transaction of the program it runs once.
  template <typename Use>
  decltype(auto) Again(Use&& use) {
    if (group_.IsWithinOwn()) return use();
    return retries_.Run(use);
  }

  // The same for rows whose outcome nobody needs. The caller ignores a refusal and goes on with the next row. Thousands
  // of rows that each waited for the time-out would take days, so after the first one they are tried once each, until
  // the database answers otherwise.
  template <typename Use>
  decltype(auto) AgainUnlessInVain(Use&& use) {
    try {
      return std::exchange(wasInVain_, false) ? use() : Again(use);
    } catch (const Error& error) {
      wasInVain_ = error.Number() == errors::kTimeout || AsksToTryAgain(error);
      throw;
    }
  }

  // Executes a statement with these values, by itself or in a group; returns how many rows were affected.
  std::int64_t Write(DriverStatement& statement, const std::string& text, std::span<const Variant* const> values);

  // Copies the row, to be sent soon. Returns false if the caller has to send it at once: the first row after a pause,
  // and an unheeded one that may not be committed with others.
  bool Waits(RowSink& sink, std::span<const Variant* const> row);
  void Forget(const RowSink& sink);  // sends its rows before it is destroyed; keeps an error for the next call

  DriverSession& Inner() { return *inner_; }
  bool IsWithinOwn() const { return group_.IsWithinOwn(); }  // a transaction of the program; while rows are sent

 private:
  bool MayCommitTogether(Lock& lock);
  void SendAll(Lock& lock);
  void SendOldest(Lock& lock);  // of the batches that have ended; unlocks meanwhile
  void RaiseFailure();
  std::optional<SteadyClock::TimePoint> DoWhatIsDue(Lock& lock);  // on the helper thread
  void CommitGroup();

  std::unique_ptr<DriverSession> inner_;
  SteadyClock& clock_;
  std::mutex mutex_;
  std::condition_variable changed_;
  RowQueue queue_;
  qmx::Retries retries_;
  bool wasInVain_ = false;  // of unheeded rows: the time-out passed while the last ones were tried again
  bool isSending_ = false;
  Group group_;
  std::exception_ptr failure_;  // raised by the next call
  HelperThread helper_;         // the last member: it stops before the others are destroyed
};

}  // namespace qmx
