// One ODBC connection: opened with a text, closed when it is destroyed.
#pragma once

#include <chrono>
#include <string>

#include "platform/odbc/dialect.h"
#include "platform/odbc/handle.h"

namespace qmx {

class OdbcConnection {
 public:
  explicit OdbcConnection(const std::string& text);  // as the driver manager takes it
  ~OdbcConnection();
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;

  SQLHANDLE Handle() const { return connection_.Get(); }
  const OdbcDialect& Dialect() const { return *dialect_; }
  bool IsUtf8() const { return isUtf8_; }                                  // narrow texts are, in both directions
  const std::string& IdentifierQuote() const { return identifierQuote_; }  // " " where identifiers cannot be quoted

  void Timeout(std::chrono::seconds limit);                     // for every statement from now on; 0 for none
  std::chrono::seconds QueryTimeout() const { return limit_; }  // that each statement must ask the driver for

  void AutoCommit(bool on);
  void End(SQLSMALLINT completion);  // SQL_COMMIT or SQL_ROLLBACK

  std::string Attribute(SQLINTEGER attribute) const;
  void Attribute(SQLINTEGER attribute, const std::string& value);

  void Run(const std::string& statement);
  std::string AskText(const std::string& query);  // the first value of its first row; "" for null and for no row

 private:
  class Linked {  // connected while it lives
   public:
    Linked(SQLHANDLE connection, const std::string& text);
    ~Linked() { SQLDisconnect(connection_); }
    Linked(const Linked&) = delete;
    Linked& operator=(const Linked&) = delete;

   private:
    SQLHANDLE connection_;
  };

  std::string Info(SQLUSMALLINT what) const;

  struct Environment : OdbcHandle<SQL_HANDLE_ENV> {
    Environment();
  };
  Environment environment_;
  OdbcHandle<SQL_HANDLE_DBC> connection_;
  Linked linked_;
  const OdbcDialect* dialect_;
  std::string identifierQuote_;
  bool isUtf8_ = false;
  std::chrono::seconds limit_{0};
};

}  // namespace qmx
