// Writes one table of the sandbox file: sets fields by name, and picks records at random.
#pragma once

#include <initializer_list>
#include <optional>
#include <variant>
#include <vector>

#include "binding/moment.h"
#include "erp/sqlite.h"
#include "erp/table.h"
#include "tool/random.h"

namespace orvan {

// A field's value. Texts are borrowed for the call.
class Value {
 public:
  Value(const char* text) : value_(std::string_view(text)) {}
  Value(const std::string& text) : value_(std::string_view(text)) {}
  Value(std::string_view text) : value_(text) {}
  Value(int whole) : value_(std::int64_t{whole}) {}
  Value(double number) : value_(number) {}
  Value(const Moment& moment) : value_(moment) {}
  Value(const std::optional<Moment>& moment) {
    if (moment) value_ = *moment;
  }
  Value(std::nullopt_t) {}

  void BindTo(Statement& statement, int parameter, ColumnType type) const;

 private:
  std::variant<std::monostate, std::string_view, std::int64_t, double, Moment> value_;
};

struct Field {
  std::string_view column;
  Value value;
};
using Fields = std::initializer_list<Field>;

class TableWriter {
 public:
  TableWriter(std::shared_ptr<Database> database, std::string_view code);

  // Adds a record. Other columns are blank, 0 or without a moment.
  void Insert(Fields fields);

  // Returns a random record that matches the filter, as a condition on its key; nothing if there is none.
  std::optional<std::string> Pick(Random& random, const std::string& filter = "1");

  std::string Get(std::string_view column, const std::string& condition);  // as text; "" if there is no record
  void Update(const std::string& condition, Fields fields);
  void Delete(const std::string& condition);
  void DeleteAndInsertAgain(const std::string& condition);  // the same record, twice in the audit trail

 private:
  std::shared_ptr<Database> database_;
  const Table& table_;
  Statement insert_;
};

}  // namespace orvan
