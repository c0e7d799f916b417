// A driver around another one that counts every operation, keeps a record of them, and can make the Nth one fail.
//
// A failing operation does nothing but raise; those after it work again, unless everything is to fail from there on, as
// when a server is gone. Quiet operations (Columns, RowsAffected, Most, QuoteIdentifier, Reset, destruction) cannot
// fail and are not counted. A test may also be told of every operation before it is done.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/database_driver.h"
#include "platform/error.h"

namespace qmx::test {

class FaultyDriver : public Driver {
 public:
  explicit FaultyDriver(Driver& inner) : inner_(inner) {}

  void FailAt(std::int64_t operation) { failAt_ = operation, failFrom_ = 0; }    // counted from 1; 0 for none
  void FailFrom(std::int64_t operation) { failFrom_ = operation, failAt_ = 0; }  // that one and all after it
  std::int64_t Operations() const { return static_cast<std::int64_t>(record_.size()); }
  bool HasFailed() const { return hasFailed_; }
  void Restart() { record_.clear(), hasFailed_ = false; }

  std::function<void(const std::string& operation)> before;  // "Prepare select ...", "Bind select ...", "Step", ...
  std::function<void(std::span<const Variant> values)> beforeAdd;  // of rows that go out together

  const std::vector<std::string>& Record() const { return record_; }  // "Prepare select ...", "Step", ...
  std::int64_t CountOf(const std::string& beginning) const {
    std::int64_t count = 0;
    for (const std::string& operation : record_) count += operation.starts_with(beginning) ? 1 : 0;
    return count;
  }

  std::string Form() const override { return inner_.Form(); }
  bool Serves(const ConnectionText& text) const override { return inner_.Serves(text); }
  std::unique_ptr<DriverSession> Open(const ConnectionText& text) override {
    Count("Open");
    return std::make_unique<Session>(*this, inner_.Open(text));
  }

 private:
  void Count(std::string operation, const std::string& statement = "") {
    if (before) before(statement.empty() ? operation : operation + " " + statement);
    record_.push_back(std::move(operation));
    const std::int64_t number = Operations();
    if (number != failAt_ && (failFrom_ == 0 || number < failFrom_)) return;
    hasFailed_ = true;
    throw Error(errors::kProviderUnspecified, "Faulty driver",
                "Operation " + std::to_string(number) + " was made to fail: " + record_.back());
  }

  class Statement : public DriverStatement {
   public:
    Statement(FaultyDriver& owner, std::string text, std::unique_ptr<DriverStatement> inner)
        : owner_(owner), text_(std::move(text)), inner_(std::move(inner)) {}
    const std::vector<ColumnDescription>& Columns() const override { return inner_->Columns(); }
    void Bind(std::size_t parameter, const Variant& value) override {
      owner_.Count("Bind", text_);
      inner_->Bind(parameter, value);
    }
    bool Step() override {
      owner_.Count("Step");
      return inner_->Step();
    }
    Variant Value(std::size_t column) override {
      owner_.Count("Value");
      return inner_->Value(column);
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
    std::size_t Most() const override { return inner_->Most(); }
    std::size_t Add(std::span<const Variant> values) override {
      owner_.Count("Add");
      if (owner_.beforeAdd) owner_.beforeAdd(values);
      return inner_->Add(values);
    }

   private:
    FaultyDriver& owner_;
    std::unique_ptr<DriverRows> inner_;
  };

  class Session : public DriverSession {
   public:
    Session(FaultyDriver& owner, std::unique_ptr<DriverSession> inner) : owner_(owner), inner_(std::move(inner)) {}
    std::unique_ptr<DriverStatement> Prepare(const std::string& statement) override {
      owner_.Count("Prepare " + statement);
      return std::make_unique<Statement>(owner_, statement, inner_->Prepare(statement));
    }
    std::unique_ptr<DriverStatement> PrepareInsert(const RowInsert& insert) override {
      owner_.Count("Prepare " + insert.Text());
      return std::make_unique<Statement>(owner_, insert.Text(), inner_->PrepareInsert(insert));
    }
    std::unique_ptr<DriverRows> PrepareRows(const RowInsert& insert) override {
      owner_.Count("PrepareRows " + insert.into);
      return std::make_unique<Rows>(owner_, inner_->PrepareRows(insert));
    }
    std::string IntegerParameter() const override { return inner_->IntegerParameter(); }
    TableDescription Describe(const std::string& table) override {
      owner_.Count("Describe " + table);
      return inner_->Describe(table);
    }
    std::string QuoteIdentifier(const std::string& name) const override { return inner_->QuoteIdentifier(name); }
    std::string System() const override { return inner_->System(); }
    std::string Catalog() override {
      owner_.Count("Catalog");
      return inner_->Catalog();
    }
    void SelectCatalog(const std::string& name) override {
      owner_.Count("SelectCatalog " + name);
      inner_->SelectCatalog(name);
    }
    void Timeout(std::chrono::seconds limit) override {
      owner_.Count("Timeout");
      inner_->Timeout(limit);
    }
    void Begin() override {
      owner_.Count("Begin");
      inner_->Begin();
    }
    void Rollback() override {
      owner_.Count("Rollback");
      inner_->Rollback();
    }
    void Commit() override {
      owner_.Count("Commit");
      inner_->Commit();
    }
    void Close() override {
      owner_.Count("Close");
      inner_->Close();
    }
    GroupLimits Grouping() override { return inner_->Grouping(); }

   private:
    FaultyDriver& owner_;
    std::unique_ptr<DriverSession> inner_;
  };

  Driver& inner_;
  std::int64_t failAt_ = 0;
  std::int64_t failFrom_ = 0;
  bool hasFailed_ = false;
  std::vector<std::string> record_;
};

}  // namespace qmx::test
