#include "platform/odbc/connection.h"

#include <sqlext.h>
#include <sqlucode.h>

#include <array>
#include <cstdint>

#include "platform/execution.h"
#include "platform/odbc/answers.h"
#include "platform/odbc/driver_manager.h"
#include "platform/odbc/statement.h"
#include "platform/odbc/unicode.h"

namespace qmx {
namespace {

constexpr std::uintptr_t kLoginSeconds = 30;
constexpr std::chrono::seconds kUsualTimeout{30};

SQLPOINTER AsPointer(std::uintptr_t number) { return reinterpret_cast<SQLPOINTER>(number); }

}  // namespace

OdbcConnection::Environment::Environment() : OdbcHandle<SQL_HANDLE_ENV>(SQL_NULL_HANDLE) {
  Check(SQLSetEnvAttr(Get(), SQL_ATTR_ODBC_VERSION, AsPointer(SQL_OV_ODBC3), 0));
}

OdbcConnection::Linked::Linked(SQLHANDLE connection, const std::string& text, Watch& watch)
    : connection_(connection), watch_(watch) {
  SQLSetConnectAttrW(connection, SQL_ATTR_LOGIN_TIMEOUT, AsPointer(kLoginSeconds),
                     SQL_IS_UINTEGER);  // if it is known
  WideText wide = ToWide(text);
  SQLRETURN result;
  {
    const WatchedCall watched(watch, "the program logged in", watch.Limits().logIn);
    result = SQLDriverConnectW(connection, nullptr, wide.data(), static_cast<SQLSMALLINT>(wide.size()), nullptr, 0,
                               nullptr, SQL_DRIVER_NOPROMPT);
  }
  if (SQL_SUCCEEDED(result)) return;
  try {
    throw OdbcError(SQL_HANDLE_DBC, connection);
  } catch (const Error&) {
    if (watch.HasEnded()) throw watch.Silence();
    throw;
  }
}

OdbcConnection::Linked::~Linked() {
  const WatchedCall watched(watch_, "the connection was closed", watch_.Limits().disconnect);
  SQLDisconnect(connection_);
}

OdbcConnection::OdbcConnection(const std::string& text, Watchdog& watchdog)
    : limits_(watchdog.Limits()),
      statementLimit_(limits_.Statement(kUsualTimeout)),
      watch_(watchdog),
      connection_(environment_.Get()),
      linked_(connection_.Get(), text, watch_),
      dialect_(&DialectOf(Info(SQL_DBMS_NAME))) {
  if (dialect_->catalogIsFile) {  // a file cannot fall silent
    limits_ = SilenceLimits::All(SilenceLimits::Duration(0));
    statementLimit_ = SilenceLimits::Duration(0);
  }
  identifierQuote_ = Info(SQL_IDENTIFIER_QUOTE_CHAR);
  for (const std::string& setting : dialect_->settings) Run(setting);
  isUtf8_ = kNarrowTextsAreUnchanged && !dialect_->utf8Query.empty() && AskText(dialect_->utf8Query) == "1";
  isInCluster_ = IsInCluster();
  CausalReads(true);
}

OdbcConnection::~OdbcConnection() {
  const WatchedCall watched(watch_, "a transaction was ended", limits_.transactionEnd);
  SQLEndTran(SQL_HANDLE_DBC, connection_.Get(), SQL_ROLLBACK);
}

template <typename Function>
void OdbcConnection::Require(const char* action, SilenceLimits::Duration limit, Function&& function) const {
  SQLRETURN result;
  {
    const WatchedCall watched(watch_, action, limit);
    result = function(Handle());
  }
  RequireNoSilence(connection_, result);
  connection_.Check(result);
}

void OdbcConnection::RaiseSilence(SQLSMALLINT handleType, SQLHANDLE handle, SQLRETURN result) const {
  if (SQL_SUCCEEDED(result)) throw watch_.Silence();
  try {
    throw OdbcError(handleType, handle);
  } catch (const Error&) {
    throw watch_.Silence();
  }
}

void OdbcConnection::Timeout(std::chrono::seconds limit) {
  statementLimit_ = limits_.Statement(limit);
  if (dialect_->timeoutSetting.empty()) {
    limit_ = limit;
    return;
  }
  const std::string units = std::to_string(limit.count() * dialect_->timeoutUnitsPerSecond);
  std::string setting = dialect_->timeoutSetting;
  setting.replace(setting.find('#'), 1, limit.count() == 0 ? dialect_->noTimeout : units);
  Run(setting);
}

void OdbcConnection::Begin() {
  transaction_.RequireNone("A transaction cannot begin");
  try {
    AutoCommit(false);
  } catch (...) {
    ReturnToAutoCommit();
    throw;
  }
  transaction_.Opened();
}

void OdbcConnection::Commit() {
  transaction_.RequireKnown();
  if (!transaction_.IsOpen()) return;
  try {
    End(SQL_COMMIT);
  } catch (const Error& error) {
    if (!IsRefusal(error, SignsOfRefusals())) Lose();
    throw;
  } catch (...) {
    Lose();
    throw;
  }
  ReturnToAutoCommit();
}

void OdbcConnection::Rollback() {
  transaction_.RequireKnown();
  if (!transaction_.IsOpen()) return;
  try {
    End(SQL_ROLLBACK);
  } catch (...) {
    Lose();
    throw;
  }
  ReturnToAutoCommit();
}

// After the transaction only: it would commit an open one.
void OdbcConnection::ReturnToAutoCommit() {
  try {
    AutoCommit(true);
  } catch (...) {
    Lose();
    throw;
  }
  transaction_.Ended();
}

void OdbcConnection::AutoCommit(bool on) {
  Require("the transaction mode was changed", limits_.transactionEnd, [on](SQLHANDLE handle) {
    return SQLSetConnectAttrW(handle, SQL_ATTR_AUTOCOMMIT, AsPointer(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF),
                              SQL_IS_UINTEGER);
  });
}

void OdbcConnection::End(SQLSMALLINT completion) {
  Require("a transaction was ended", limits_.transactionEnd,
          [completion](SQLHANDLE handle) { return SQLEndTran(SQL_HANDLE_DBC, handle, completion); });
}

std::string OdbcConnection::Attribute(SQLINTEGER attribute) const {
  std::array<SQLWCHAR, 1024> text{};
  SQLINTEGER bytes = 0;
  Require("a setting was read", statementLimit_,
          [&](SQLHANDLE handle) { return SQLGetConnectAttrW(handle, attribute, text.data(), sizeof text, &bytes); });
  return FromWide(text.data());
}

void OdbcConnection::Attribute(SQLINTEGER attribute, const std::string& value) {
  WideText wide = ToWide(value);
  // The interface asks for a length in bytes, but MariaDB's driver would then read twice as far.
  Require("a setting was changed", statementLimit_,
          [&](SQLHANDLE handle) { return SQLSetConnectAttrW(handle, attribute, wide.data(), SQL_NTS); });
}

void OdbcConnection::Run(const std::string& statement) {
  OdbcDriverStatement running(*this, statement);
  Execution(running).Run();
}

std::string OdbcConnection::AskText(const std::string& query, std::size_t column) {
  OdbcDriverStatement running(*this, query);
  return running.Step() ? running.Value(column).ToText() : std::string();
}

bool OdbcConnection::IsInCluster() {
  constexpr std::size_t kValue = 1;  // after the setting's name
  return !dialect_->clusterQuery.empty() && AskText(dialect_->clusterQuery, kValue) == "ON";
}

void OdbcConnection::CausalReads(bool on) {
  if (!isInCluster_) return;
  std::string setting = dialect_->causalReadsSetting;
  setting.replace(setting.find('#'), 1, on ? "1" : "0");
  Run(setting);
}

std::string OdbcConnection::Info(SQLUSMALLINT what) const {
  std::array<SQLWCHAR, 256> text{};
  SQLSMALLINT bytes = 0;
  Require("a setting was read", statementLimit_,
          [&](SQLHANDLE handle) { return SQLGetInfoW(handle, what, text.data(), sizeof text, &bytes); });
  return FromWide(text.data());
}

}  // namespace qmx
