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

#include "platform/batches/group.h"
#include "platform/batches/helper_thread.h"
#include "platform/batches/row_queue.h"
#include "platform/database_driver.h"
#include "platform/error.h"
#include "platform/steady_clock.h"

namespace qmx {

class BatchingInsert;

class BatchingDriverSession : public DriverSession {
 public:
  using Lock = SteadyClock::Lock;

  explicit BatchingDriverSession(std::unique_ptr<DriverSession> inner,
                                 SteadyClock& clock = SteadyClock::OfTheSystem());  // borrowed
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

  // Executes a statement with these values, by itself or in a group; returns how many rows were affected.
  std::int64_t Write(DriverStatement& statement, const std::string& text, std::span<const Variant* const> values);

  // The same for a statement whose outcome nobody needs. It is in no group, whose rows its refusal would take back.
  std::int64_t WriteAlone(DriverStatement& statement, std::span<const Variant* const> values);

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
  bool isSending_ = false;
  Group group_;
  std::exception_ptr failure_;  // raised by the next call
  HelperThread helper_;         // the last member: it stops before the others are destroyed
};

}  // namespace qmx
