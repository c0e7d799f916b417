// One ODBC connection: opened with a text, closed when it is destroyed. A watchdog guards calls that may wait for the
// server.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/odbc/dialect.h"
#include "platform/odbc/handle.h"
#include "platform/odbc/watchdog.h"
#include "platform/transaction_state.h"

namespace qmx {

class OdbcConnection {
 public:
  // The text is in the driver manager's form. The watchdog is borrowed.
  explicit OdbcConnection(const std::string& text, Watchdog& watchdog = Watchdog::Usual());
  ~OdbcConnection();
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;

  SQLHANDLE Handle() const { return connection_.Get(); }
  const OdbcDialect& Dialect() const { return *dialect_; }
  Refusals SignsOfRefusals() const { return isInCluster_ ? dialect_->refusalsInACluster : dialect_->refusals; }
  bool IsUtf8() const { return isUtf8_; }                                  // of narrow texts, in both directions
  const std::string& IdentifierQuote() const { return identifierQuote_; }  // " " if identifiers cannot be quoted

  void Timeout(std::chrono::seconds limit);                     // for every statement from now on; 0 for none
  std::chrono::seconds QueryTimeout() const { return limit_; }  // to be set on each statement

  // A transaction, as in DriverSession.
  void Begin();
  void Commit();
  void Rollback();
  const TransactionState& Transaction() const { return transaction_; }
  void Lose() noexcept { transaction_.Lose(); }  // an answer was lost: the error is being handled

  std::string Attribute(SQLINTEGER attribute) const;
  void Attribute(SQLINTEGER attribute, const std::string& value);

  void Run(const std::string& statement);
  // Returns a value of the first row; "" for null and for no row.
  std::string AskText(const std::string& query, std::size_t column = 0);

  // In a cluster: whether reads wait for what was committed on other nodes before. They do in a new connection.
  void CausalReads(bool on);

  // For the statements of this connection.
  void WatchStatement(const std::shared_ptr<const std::string>& statement) const { watch_.Statement(statement); }
  WatchedCall WatchedAsStatement(const char* action) const { return {watch_, action, statementLimit_}; }

  void RequireNoSilence() const {  // raises if the watchdog ended the connection
    if (watch_.HasEnded()) throw watch_.Silence();
  }
  // The same after a call, whose error on the handle becomes the cause.
  template <SQLSMALLINT type>
  void RequireNoSilence(const OdbcHandle<type>& handle, SQLRETURN result) const {
    if (watch_.HasEnded()) RaiseSilence(type, handle.Get(), result);
  }

 private:
  class Linked {  // connected during its lifetime
   public:
    Linked(SQLHANDLE connection, const std::string& text, Watch& watch);
    ~Linked();
    Linked(const Linked&) = delete;
    Linked& operator=(const Linked&) = delete;

   private:
    SQLHANDLE connection_;
    Watch& watch_;
  };

  bool IsInCluster();
  void AutoCommit(bool on);
  void End(SQLSMALLINT completion);  // SQL_COMMIT or SQL_ROLLBACK
  void ReturnToAutoCommit();
  std::string Info(SQLUSMALLINT what) const;
  template <typename Function>
  void Require(const char* action, SilenceLimits::Duration limit, Function&& function) const;
  [[noreturn]] void RaiseSilence(SQLSMALLINT handleType, SQLHANDLE handle, SQLRETURN result) const;

  struct Environment : OdbcHandle<SQL_HANDLE_ENV> {
    Environment();
  };
  SilenceLimits limits_;
  SilenceLimits::Duration statementLimit_;
  mutable Watch watch_;
  Environment environment_;
  OdbcHandle<SQL_HANDLE_DBC> connection_;
  Linked linked_;
  const OdbcDialect* dialect_;
  std::string identifierQuote_;
  bool isInCluster_ = false;
  bool isUtf8_ = false;
  TransactionState transaction_;
  std::chrono::seconds limit_{0};
};

}  // namespace qmx
