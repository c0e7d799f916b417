#include "tools/qmxadmin/verify/comparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <set>

#include "platform/error.h"
#include "platform/names.h"
#include "tools/qmxadmin/old_midnights.h"

namespace qmx {
namespace {

constexpr std::size_t kRowsAtATime = 1000;
constexpr std::size_t kAllRows = std::numeric_limits<std::int32_t>::max();

std::optional<Variant> As(const Variant& value, Variant::Kind type) {
  try {
    return value.ConvertedTo(type);
  } catch (const Error&) {
    return std::nullopt;
  }
}

bool AreSame(const Variant& one, const Variant& other, Variant::Kind type) {
  if (one.IsNull() || other.IsNull()) return one.IsNull() && other.IsNull();
  if (one == other) return true;
  const std::optional<Variant> oneTyped = As(one, type), otherTyped = As(other, type);
  return oneTyped && otherTyped ? *oneTyped == *otherTyped : one.ToText() == other.ToText();
}

std::vector<std::size_t> KeyOf(const LocalTable& table) {
  std::vector<std::size_t> key;
  for (const std::string& name : table.key) {
    const auto found = std::find_if(table.columns.begin(), table.columns.end(),
                                    [&](const LocalColumn& column) { return column.name == name; });
    key.push_back(static_cast<std::size_t>(found - table.columns.begin()));
  }
  return key;
}

// A table in one of the two databases: its name and its columns, quoted for statements.
class Side {
 public:
  Side(const LocalTable& table, DriverSession& session, const std::vector<std::size_t>& key)
      : session_(session), width_(table.columns.size()), key_(key) {
    const TableDescription description = session.Describe(table.name);
    name_ = session.QuoteIdentifier(description.name);
    for (const LocalColumn& column : table.columns) {
      const auto found =
          std::find_if(description.columns.begin(), description.columns.end(),
                       [&](const ColumnDescription& there) { return SameName(there.name, column.name); });
      columns_.push_back(session.QuoteIdentifier(found->name));
    }
  }

  std::string Select(const std::string& more) const {
    return fmt::format("select {}{} from {}", fmt::join(columns_, ", "), more, name_);
  }
  std::string KeyColumn(std::size_t part) const { return columns_[key_[part]]; }

  std::unique_ptr<DriverStatement> Prepare(const std::string& text) const {
    try {
      return session_.Prepare(text);
    } catch (Error& error) {
      error.With("statement", text);
      throw;
    }
  }

  RowValues Row(DriverStatement& statement) const {
    RowValues row;
    row.reserve(width_);
    for (std::size_t column = 0; column < width_; ++column) row.push_back(statement.Value(column));
    return row;
  }

 private:
  DriverSession& session_;
  std::size_t width_;
  const std::vector<std::size_t>& key_;
  std::string name_;
  std::vector<std::string> columns_;
};

// Reads the local rows in the order of their keys, a fixed number at a time, because a driver may keep the whole result
// of a statement in memory.
class LocalRows {
 public:
  LocalRows(const Side& side, const std::vector<std::size_t>& key, std::size_t rowsAtATime)
      : side_(side), key_(key), rowsAtATime_(rowsAtATime) {
    std::vector<std::string> order;
    for (std::size_t part = 0; part < key.size(); ++part) order.push_back(side.KeyColumn(part));
    const std::string end = fmt::format(" order by {} limit {}", fmt::join(order, ", "), rowsAtATime_);
    first_ = side.Prepare(side.Select("") + end);
    next_ = side.Prepare(side.Select("") + " where " + After(0) + end);
  }

  template <typename Work>
  void ForEach(Work&& work) {
    for (std::optional<RowValues> last = Read(*first_, {}, work); last; last = Read(*next_, last, work)) continue;
  }

 private:
  // Returns "a >= ? and (a > ? or (b > ?))". The database can search an index by the first condition.
  std::string After(std::size_t part) const {
    const std::string column = side_.KeyColumn(part);
    if (part + 1 == key_.size()) return column + " > ?";
    return fmt::format("{0} >= ? and ({0} > ? or ({1}))", column, After(part + 1));
  }

  // Returns the last row read, or nothing if it is the last row of the table.
  template <typename Work>
  std::optional<RowValues> Read(DriverStatement& statement, const std::optional<RowValues>& after, Work& work) {
    std::size_t parameter = 0;
    for (std::size_t part = 0; after && part < key_.size(); ++part) {
      const bool isLast = part + 1 == key_.size();
      for (int times = isLast ? 1 : 2; times > 0; --times) statement.Bind(parameter++, (*after)[key_[part]]);
    }
    std::size_t count = 0;
    RowValues row;
    for (; statement.Step(); ++count) {
      row = side_.Row(statement);
      work(row);
    }
    statement.Reset();
    return count == rowsAtATime_ ? std::optional(row) : std::nullopt;
  }

  const Side& side_;
  const std::vector<std::size_t>& key_;
  std::size_t rowsAtATime_;
  std::unique_ptr<DriverStatement> first_, next_;
};

// Looks up the ERP's rows by key and knows which rows were never looked up.
class ErpRows {
 public:
  ErpRows(DriverSession& session, const Side& side, const std::vector<std::size_t>& key) : side_(side), key_(key) {
    Run(session, "create table looked_up (id integer primary key)");
    std::vector<std::string> conditions;
    for (std::size_t part = 0; part < key.size(); ++part) conditions.push_back(side.KeyColumn(part) + " = ?");
    find_ = side.Prepare(side.Select(", rowid") + " where " + fmt::format("{}", fmt::join(conditions, " and ")));
    mark_ = side.Prepare("insert or ignore into looked_up values (?)");
    others_ = side.Prepare(side.Select("") + " where rowid not in (select id from looked_up) order by rowid");
  }

  std::vector<RowValues> Take(const RowValues& local) {
    for (std::size_t part = 0; part < key_.size(); ++part) find_->Bind(part, local[key_[part]]);
    std::vector<RowValues> rows;
    std::vector<Variant> ids;
    while (find_->Step()) {
      rows.push_back(side_.Row(*find_));
      ids.push_back(find_->Value(rows.back().size()));
    }
    find_->Reset();
    for (const Variant& id : ids) {
      mark_->Bind(0, id);
      mark_->Step();
      mark_->Reset();
    }
    return rows;
  }

  template <typename Work>
  void ForEachOther(Work&& work) {
    while (others_->Step()) work(side_.Row(*others_));
  }

 private:
  static void Run(DriverSession& session, const std::string& text) { session.Prepare(text)->Step(); }

  const Side& side_;
  const std::vector<std::size_t>& key_;
  std::unique_ptr<DriverStatement> find_, mark_, others_;
};

bool StartsBefore(const LocalTable& table, const RowValues& row, DateTime first) {
  for (std::size_t column = 0; column < table.columns.size(); ++column) {
    if (table.columns[column].name == "stdt") return !row[column].IsNull() && row[column].ToDateTime() < first;
  }
  return false;
}

}  // namespace

void RequireComparable(const LocalTable& table, const TableDescription& found) {
  std::set<std::string> columns, key, wantedKey;
  for (const ColumnDescription& column : found.columns) columns.insert(FoldName(column.name));
  for (const std::size_t column : found.key) key.insert(FoldName(found.columns[column].name));
  for (const std::string& column : table.key) wantedKey.insert(FoldName(column));
  std::string problem;
  for (const LocalColumn& column : table.columns) {
    if (!columns.contains(FoldName(column.name))) problem = "has no column " + column.name;
  }
  if (problem.empty() && key != wantedKey)
    problem = fmt::format("does not have the key {}", fmt::join(table.key, ", "));
  if (problem.empty()) return;
  throw Error(errors::kInvalidCall, "qmxadmin verify",
              fmt::format("The local table {} {}, so its rows cannot be compared. \"qmxadmin init --print\" shows the "
                          "expected definition.",
                          table.name, problem));
}

ComparedRows Compare(const LocalTable& table, DriverSession& local, DriverSession& erp,
                     std::optional<DateTime> firstStartDate, DifferenceSink& differences) {
  const std::vector<std::size_t> key = KeyOf(table);
  const Side localSide(table, local, key), erpSide(table, erp, key);
  erp.Begin();
  ErpRows erpRows(erp, erpSide, key);
  ComparedRows compared;
  // Behind a midnight of an older release, moments do not follow each other as their full forms do.
  const std::size_t rowsAtATime = CountOldMidnights(local, table) == 0 ? kRowsAtATime : kAllRows;
  LocalRows(localSide, key, rowsAtATime).ForEach([&](const RowValues& row) {
    ++compared.local;
    const std::vector<RowValues> listed = erpRows.Take(row);
    compared.erp += static_cast<std::int64_t>(listed.size());
    if (listed.size() > 1) differences.Repeated(listed.front(), static_cast<std::int64_t>(listed.size()));
    if (listed.empty()) {
      if (firstStartDate && StartsBefore(table, row, *firstStartDate)) {
        ++compared.older;
      } else {
        differences.Surplus(row);
      }
      return;
    }
    // A copy would leave the row that is listed last.
    std::vector<std::size_t> columns;
    for (std::size_t column = 0; column < row.size(); ++column) {
      if (!AreSame(row[column], listed.back()[column], table.columns[column].type)) columns.push_back(column);
    }
    if (!columns.empty()) differences.Different(row, listed.back(), columns);
  });
  erpRows.ForEachOther([&](const RowValues& row) {
    ++compared.erp;
    differences.Missing(row);
  });
  erp.Rollback();  // the list of rows that were looked up is no longer needed
  return compared;
}

}  // namespace qmx
