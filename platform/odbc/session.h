// An open database behind ODBC.
#pragma once

#include <memory>
#include <string>

#include "platform/database_driver.h"
#include "platform/odbc/connection.h"

namespace qmx {

class OdbcDriverSession : public DriverSession {
 public:
  OdbcDriverSession(std::string text, Watchdog& watchdog);  // borrowed

  std::unique_ptr<DriverStatement> Prepare(const std::string& statement) override;
  std::string IntegerParameter() const override { return connection_->Dialect().integerParameter; }
  bool KeepsMomentsAsTexts() const override { return connection_->Dialect().keepsMomentsAsTexts; }
  std::unique_ptr<DriverRows> PrepareRows(const RowInsert& insert) override;
  TableDescription Describe(const std::string& table) override;
  std::string QuoteIdentifier(const std::string& name) const override;
  std::string System() const override { return std::string(connection_->Dialect().system); }
  std::string Catalog() override;
  void SelectCatalog(const std::string& name) override;
  void Timeout(std::chrono::seconds limit) override;
  void Begin() override;
  void Rollback() override;
  void Commit() override;
  void Close() override;
  void EnableSavepoints() override;
  bool CanRollBack(const std::string& table) override { return !KeepsParts(table); }
  bool LocksWholeDatabase() const override { return connection_->Dialect().catalogIsFile; }
  GroupLimits Grouping() override;
  // Written rows are the caller's own, so reading them need not wait for other nodes.
  void MayGroup(bool may) override { Known().CausalReads(!may); }

 private:
  bool KeepsParts(const std::string& table);  // "" for any table
  OdbcConnection& Known();                    // returns the connection; raises if its state is unknown
  void ConnectTo(const std::string& catalog);
  void Reconnect(std::string text);

  Watchdog& watchdog_;
  std::string text_;  // the text of the open connection
  std::unique_ptr<OdbcConnection> connection_;
  std::chrono::seconds timeout_{30};
};

}  // namespace qmx
