// A table's manager: initialize, the table's listing method, Close.
#pragma once

#include "binding/object.h"
#include "erp/sqlite.h"
#include "erp/table.h"

namespace orvan {

class Manager : public Object {
 public:
  // The type that all managers of a table share.
  static const Type& TypeOf(const Table& table);

  explicit Manager(const Table& table);

  // Returns the object as a manager of any table.
  static Manager& Of(Argument argument);

  const Table& ManagedTable() const { return table_; }

  // Returns the open file. Raises an error before initialize and after Close.
  const std::shared_ptr<Database>& File() const;

  void Invoke(std::int32_t member, Arguments arguments, Result result) override;

 private:
  void Initialize(std::string_view businessComponent);
  void List(Arguments bounds, Result result);

  const Table& table_;
  std::string listSql_;
  std::shared_ptr<Database> file_;
};

// Binds a bound to a parameter in the form in which its column is compared: text, number or day.
void BindBound(Statement& statement, int parameter, const Column& column, Argument bound);

}  // namespace orvan
