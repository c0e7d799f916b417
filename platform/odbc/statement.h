// A prepared statement of an ODBC connection, executed with one row of parameters or with many.
//
// Texts go both ways as UTF-16. A date-time goes to the database as its canonical text, because the systems
// disagree about every other form. A text in a result gets its column's type if it has that form.
#pragma once

#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/database_driver.h"
#include "platform/odbc/statement_handle.h"
#include "platform/odbc/unicode.h"

namespace qmx {

// A parameter's values in many rows. Texts are UTF-8 or wide, each `width` bytes after the one before.
struct ParameterArray {
  SQLSMALLINT cType;
  SQLSMALLINT sqlType;
  std::size_t width;  // of a value, in bytes
  std::vector<char> cells{};
  std::vector<SQLLEN> lengths{};  // in bytes, or SQL_NULL_DATA
};

class OdbcDriverStatement : public DriverStatement {
 public:
  OdbcDriverStatement(OdbcConnection& connection, const std::string& text);  // the connection is borrowed

  const std::vector<ColumnDescription>& Columns() const override;
  void Bind(std::size_t parameter, const Variant& value) override;
  void BindUtf8(std::size_t parameter, const std::string& text);  // borrowed; for drivers that take UTF-8
  void BindWide(std::size_t parameter, const std::string& text);
  void BindArray(std::size_t parameter, ParameterArray& array);  // borrowed
  void ArraySize(std::size_t rows);                              // that the arrays hold
  bool Step() override;
  Variant Value(std::size_t column) override;
  std::int64_t RowsAffected() const override { return affected_; }
  void Reset() noexcept override;

 private:
  struct Parameter {  // the memory from which the driver reads a value at execution
    WideText text;
    std::string utf8;  // of a date-time
    SQLINTEGER integer = 0;
    double number = 0;
    unsigned char bit = 0;
    SQLLEN indicator = 0;
  };

  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds kLongestTrust{100};  // for how long a prepared query is taken to be valid

  void Prepare();
  void Execute();
  Parameter& Place(std::size_t parameter);
  template <typename Ask>
  auto Heard(Ask&& ask) const;  // of the server, whose silence makes the connection's state unknown
  bool Fetch();
  void Close() noexcept;
  std::string TextOf(const Variant& value) const;  // that is bound for it
  ColumnDescription Describe(SQLUSMALLINT column) const;
  std::optional<std::string> Text(SQLUSMALLINT column);
  template <typename Char>
  std::optional<std::basic_string_view<Char>> Read(SQLUSMALLINT column, SQLSMALLINT type,
                                                   std::basic_string<Char>& buffer);

  OdbcConnection& connection_;
  WideText text_;
  std::shared_ptr<const std::string> shownText_;
  StatementHandle statement_;
  Clock::time_point prepared_;
  std::chrono::seconds limit_{0};                                  // as set in the driver
  std::deque<Parameter> parameters_;                               // whose addresses do not change
  mutable std::optional<std::vector<ColumnDescription>> columns_;  // read once
  WideText wide_;                                                  // a buffer for texts that are read
  std::string utf8_;
  std::int64_t affected_ = 0;
  bool isRunning_ = false;
  bool hasRows_ = false;
};

}  // namespace qmx
