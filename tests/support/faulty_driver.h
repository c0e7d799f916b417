// A driver around another one that counts every operation, keeps a record of them, and makes chosen ones fail.
//
// An operation fails before it is done, after it was done (its answer is lost), or, for a Commit, by taking back what
// it should have committed, as a database does that refuses it. With AsksAgain the database takes back the statement,
// and the open transaction with it, and asks to try again (SQLSTATE 40001). The session behaves as real ones do: a
// Begin that fails has opened nothing, and once the answer to the Commit after it is lost, the session serves nothing
// any more. Other operations work, unless everything is to fail from one on, as when a server is gone.
//
// Quiet operations (Columns, RowsAffected, Most, QuoteIdentifier, LocksWholeDatabase, Reset, destruction) cannot fail
// and are not counted. A test may also see every operation before it is done. Sessions may be used by several threads
// in turn.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/database_driver.h"
#include "platform/error.h"

namespace qmx::test {

enum class FaultKind { Before, After, TakenBack, AsksAgain };

inline std::string NameOf(FaultKind kind) {
  constexpr const char* kNames[] = {"Before", "After", "TakenBack", "AsksAgain"};
  return kNames[static_cast<int>(kind)];
}

class FaultyDriver : public Driver {
 public:
  explicit FaultyDriver(Driver& inner) : inner_(inner) {}

  // Operations count from 1.
  void FailAt(std::int64_t operation) { FailAt(std::set<std::int64_t>{operation}); }  // 0 for none
  void FailAt(std::set<std::int64_t> operations) { failAt_ = std::move(operations), failFrom_ = 0; }
  void FailFrom(std::int64_t operation) { failFrom_ = operation, failAt_.clear(); }  // that one and all after it
  void FailAs(FaultKind kind) { kind_ = kind; }
  void FailWith(std::int32_t number) { number_ = number; }
  // Only operations that begin so are counted for FailAt and FailFrom.
  void FailOnly(std::string beginning) { only_ = std::move(beginning); }

  std::int64_t Operations() const { return static_cast<std::int64_t>(record_.size()); }
  bool HasFailed() const { return failures_ > 0; }
  std::int64_t Failures() const { return failures_; }
  std::string FirstFailed() const { return firstFailed_; }
  void Restart() { record_.clear(), counted_ = failures_ = 0, firstFailed_.clear(), isLost_ = false; }

  std::function<void(const std::string& operation)> before;  // "Prepare select ...", "Bind select ...", "Step", ...
  std::function<void(std::span<const Variant> values)> beforeAdd;  // of rows that go out together
  std::function<std::size_t()> most;                               // such rows that the database takes

  const std::vector<std::string>& Record() const { return record_; }  // "Prepare select ...", "Step", ...
  std::int64_t CountOf(const std::string& beginning) const {
    std::int64_t count = 0;
    for (const std::string& operation : record_) count += operation.starts_with(beginning) ? 1 : 0;
    return count;
  }

  std::string Form() const override { return inner_.Form(); }
  bool Serves(const ConnectionText& text) const override { return inner_.Serves(text); }
  std::unique_ptr<DriverSession> Open(const ConnectionText& text) override {
    isLost_ = false;
    return Do("Open",
              [&]() -> std::unique_ptr<DriverSession> { return std::make_unique<Session>(*this, inner_.Open(text)); });
  }

 private:
  enum class Fate { Works, FailsBefore, FailsAfter, IsTakenBack };

  Fate Count(const std::string& operation, const std::string& statement) {
    if (before) before(statement.empty() ? operation : operation + " " + statement);
    const std::lock_guard lock(mutex_);
    record_.push_back(operation);
    const bool isCounted = operation.starts_with(only_);
    if (isCounted) ++counted_;
    const bool isGone = isLost_ || (failFrom_ > 0 && counted_ > failFrom_);
    if (!isGone && !(isCounted && (counted_ == failFrom_ || failAt_.contains(counted_)))) return Fate::Works;
    if (failures_++ == 0) firstFailed_ = Failed(operation);
    if ((isGone && kind_ != FaultKind::AsksAgain) || kind_ == FaultKind::Before) return Fate::FailsBefore;
    return kind_ == FaultKind::After ? Fate::FailsAfter : Fate::IsTakenBack;
  }

  std::string Failed(const std::string& operation) const {
    return "Operation " + std::to_string(Operations()) + " was made to fail: " + operation;
  }

  [[noreturn]] void Fail(const std::string& operation) const {
    Error error(number_, "Faulty driver", Failed(operation));
    if (kind_ == FaultKind::AsksAgain) error.With("SQLSTATE", "40001");
    throw error;
  }

  template <typename Work>
  auto Do(const std::string& operation, Work&& work, const std::string& statement = "") -> std::invoke_result_t<Work> {
    const Fate fate = Count(operation, statement);
    if (fate == Fate::IsTakenBack && takeBack_) takeBack_();
    if (fate == Fate::FailsBefore || fate == Fate::IsTakenBack) Fail(operation);
    if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
      work();
      if (fate == Fate::FailsAfter) Fail(operation);
    } else {
      auto result = work();
      if (fate == Fate::FailsAfter) Fail(operation);
      return result;
    }
  }

  class Statement : public DriverStatement {
   public:
    Statement(FaultyDriver& owner, std::string text, std::unique_ptr<DriverStatement> inner)
        : owner_(owner), text_(std::move(text)), inner_(std::move(inner)) {}
    const std::vector<ColumnDescription>& Columns() const override { return inner_->Columns(); }
    void Bind(std::size_t parameter, const Variant& value) override {
      owner_.Do(
          "Bind", [&] { inner_->Bind(parameter, value); }, text_);
    }
    bool Step() override {
      return owner_.Do("Step", [&] { return inner_->Step(); });
    }
    Variant Value(std::size_t column) override {
      return owner_.Do("Value", [&] { return inner_->Value(column); });
    }
    std::int64_t RowsAffected() const override { return inner_->RowsAffected(); }
    void Reset() noexcept override { inner_->Reset(); }
    void MayWait() noexcept override { inner_->MayWait(); }

   private:
    FaultyDriver& owner_;
    std::string text_;
    std::unique_ptr<DriverStatement> inner_;
  };

  class Rows : public DriverRows {
   public:
    Rows(FaultyDriver& owner, std::unique_ptr<DriverRows> inner) : owner_(owner), inner_(std::move(inner)) {}
    std::size_t Most() const override { return owner_.most ? owner_.most() : inner_->Most(); }
    std::size_t Add(std::span<const Variant> values) override {
      return owner_.Do("Add", [&] {
        if (owner_.beforeAdd) owner_.beforeAdd(values);
        return inner_->Add(values);
      });
    }

   private:
    FaultyDriver& owner_;
    std::unique_ptr<DriverRows> inner_;
  };

  class Session : public DriverSession {
   public:
    Session(FaultyDriver& owner, std::unique_ptr<DriverSession> inner) : owner_(owner), inner_(std::move(inner)) {
      if (owner_.kind_ == FaultKind::AsksAgain) owner_.takeBack_ = [this] { TakeBack(); };
    }
    ~Session() override { owner_.takeBack_ = nullptr; }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    std::unique_ptr<DriverStatement> Prepare(const std::string& statement) override {
      return owner_.Do("Prepare " + statement, [&]() -> std::unique_ptr<DriverStatement> {
        return std::make_unique<Statement>(owner_, statement, inner_->Prepare(statement));
      });
    }
    std::unique_ptr<DriverStatement> PrepareInsert(const RowInsert& insert) override {
      return owner_.Do("Prepare " + insert.Text(), [&]() -> std::unique_ptr<DriverStatement> {
        return std::make_unique<Statement>(owner_, insert.Text(), inner_->PrepareInsert(insert));
      });
    }
    std::unique_ptr<DriverRows> PrepareRows(const RowInsert& insert) override {
      return owner_.Do("PrepareRows " + insert.into, [&]() -> std::unique_ptr<DriverRows> {
        return std::make_unique<Rows>(owner_, inner_->PrepareRows(insert));
      });
    }
    std::string IntegerParameter() const override { return inner_->IntegerParameter(); }
    bool KeepsMomentsAsTexts() const override { return inner_->KeepsMomentsAsTexts(); }
    TableDescription Describe(const std::string& table) override {
      return owner_.Do("Describe " + table, [&] { return inner_->Describe(table); });
    }
    std::string QuoteIdentifier(const std::string& name) const override { return inner_->QuoteIdentifier(name); }
    std::string System() const override { return inner_->System(); }
    std::string Catalog() override {
      return owner_.Do("Catalog", [&] { return inner_->Catalog(); });
    }
    void SelectCatalog(const std::string& name) override {
      owner_.Do("SelectCatalog " + name, [&] { inner_->SelectCatalog(name); });
    }
    void Timeout(std::chrono::seconds limit) override {
      owner_.Do("Timeout", [&] { inner_->Timeout(limit); });
    }
    void Begin() override {
      if (owner_.Count("Begin", "") != Fate::Works) owner_.Fail("Begin");
      inner_->Begin();
      isWithinBegin_ = true;
    }
    void Rollback() override {
      owner_.Do("Rollback", [&] {
        inner_->Rollback();
        isWithinBegin_ = false;
      });
    }
    void Commit() override {
      const Fate fate = owner_.Count("Commit", "");
      if (fate == Fate::IsTakenBack) inner_->Rollback();
      if (fate == Fate::Works || fate == Fate::FailsAfter) inner_->Commit();
      owner_.isLost_ |= isWithinBegin_ && fate == Fate::FailsAfter;
      if (fate != Fate::FailsBefore) isWithinBegin_ = false;
      if (fate != Fate::Works) owner_.Fail("Commit");
    }
    void Close() override {
      owner_.Do("Close", [&] { inner_->Close(); });
    }
    void EnableSavepoints() override {
      owner_.Do("EnableSavepoints", [&] { inner_->EnableSavepoints(); });
    }
    bool CanRollBack(const std::string& table) override {
      return owner_.Do("CanRollBack " + table, [&] { return inner_->CanRollBack(table); });
    }
    bool LocksWholeDatabase() const override { return inner_->LocksWholeDatabase(); }
    GroupLimits Grouping() override {
      return owner_.Do("Grouping", [&] { return inner_->Grouping(); });
    }
    void Retry(const std::function<void()>& work) override { inner_->Retry(work); }
    std::int64_t Retries() const override { return inner_->Retries(); }
    // Stops grouping even if it fails to commit the open group.
    void MayGroup(bool may) override {
      const std::string operation = std::string("MayGroup ") + (may ? "true" : "false");
      const Fate fate = owner_.Count(operation, "");
      if (fate == Fate::Works || fate == Fate::FailsAfter || !may) inner_->MayGroup(may);
      if (fate != Fate::Works) owner_.Fail(operation);
    }

   private:
    void TakeBack() {
      if (std::exchange(isWithinBegin_, false)) inner_->Rollback();
    }

    FaultyDriver& owner_;
    std::unique_ptr<DriverSession> inner_;
    bool isWithinBegin_ = false;
  };

  Driver& inner_;
  std::mutex mutex_;
  std::set<std::int64_t> failAt_;
  std::int64_t failFrom_ = 0;
  FaultKind kind_ = FaultKind::Before;
  std::int32_t number_ = errors::kProviderUnspecified;
  std::string only_;
  std::function<void()> takeBack_;  // of the open session
  bool isLost_ = false;
  std::int64_t counted_ = 0;
  std::int64_t failures_ = 0;
  std::string firstFailed_;
  std::vector<std::string> record_;
};

}  // namespace qmx::test
