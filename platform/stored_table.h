// A table of the database as record sets know it: its columns and key, and the prepared statements that write its rows.
//
// Each session has one instance for a table, which lives as long as the session is open. There is one prepared INSERT
// for each set of assigned columns and one prepared UPDATE for each set of differing ones, used again and again. Errors
// get the table, the key and the statement as details.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/row_layout.h"
#include "platform/unit_of_work.h"

namespace qmx {

class StoredTable {
 public:
  // Both are borrowed. Reads the description; raises -2147217865.
  StoredTable(DriverSession& session, const UnitOfWork& unit, std::string name);

  const std::string& Name() const { return name_; }
  const std::shared_ptr<const RowLayout>& Layout() const { return layout_; }
  std::string SelectAll() const { return "select * from " + quotedName_; }
  std::int64_t Count();

  void Insert(const Row& assigned, bool mayWait);  // mayWait: the driver may postpone the row

  // Writes the changes (Empty: unchanged) to the row `stored`. Raises -2147217864 and changes nothing unless exactly
  // one row matches. Within a unit of work it is the unit's rollback that takes the changes back.
  void Update(const Row& stored, const Row& changes);

  // Returns the row `stored` as the database holds it now. Raises -2147217864 unless exactly one row matches.
  Row Read(const Row& stored);

  // Returns the key's columns and values, for errors: "emno='E1', skll='WELD'".
  std::string KeyText(const Row& row) const;

 private:
  struct Prepared {
    std::string text;
    std::unique_ptr<DriverStatement> statement;
  };
  using Shape = std::string;  // a character, 0 or 1, for each flag: a vector<bool> is compared bit by bit
  using Statements = std::map<Shape, Prepared>;

  Prepared& InsertFor(const Row& assigned);
  Prepared NewInsert(const Row& assigned);
  Prepared& UpdateFor(const Row& stored, const Row& changes);
  Prepared PreparedOf(std::string text);
  std::int64_t Count(const Row& stored);  // the rows that match
  template <typename Bind>
  std::int64_t CountedBy(const std::string& text, Bind&& bind);
  std::string Condition(const Row& stored) const;
  void BindKey(DriverStatement& statement, std::size_t parameter, const Row& stored) const;
  bool IsFoundByKey(const Row& stored) const;
  bool IsMomentText(std::size_t column) const;
  std::string Quoted(std::size_t column) const;

  DriverSession& session_;
  const UnitOfWork& unit_;
  std::string name_;
  std::string spelling_;  // the database's
  std::string quotedName_;
  std::shared_ptr<const RowLayout> layout_;
  std::vector<std::size_t> key_;  // all columns when the table has no key
  bool hasKey_ = false;
  Statements inserts_;
  Statements::value_type* lastInsert_ = nullptr;  // one of them, or none
  Statements updates_;
  Shape shape_;  // of the statement that is looked for; kept for its memory
};

}  // namespace qmx
