#include "tools/qmxadmin/old_midnights.h"

#include <algorithm>
#include <chrono>

#include "platform/error.h"
#include "platform/execution.h"
#include "platform/names.h"

namespace qmx {
namespace {

constexpr const char* kIsOld = " glob '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]'";

struct MomentColumns {
  std::string table;                 // names as statements write them
  std::vector<std::string> columns;  // none: there is nothing to look for
};

bool IsMoment(const LocalTable& table, const ColumnDescription& found) {
  return found.type == Variant::Kind::DateTime && std::ranges::any_of(table.columns, [&](const LocalColumn& column) {
           return column.type == Variant::Kind::DateTime && SameName(column.name, found.name);
         });
}

MomentColumns MomentColumnsOf(DriverSession& session, const LocalTable& table) {
  MomentColumns moments;
  if (!session.KeepsMomentsAsTexts()) return moments;
  try {
    const TableDescription found = session.Describe(table.name);
    moments.table = session.QuoteIdentifier(found.name);
    for (const ColumnDescription& column : found.columns) {
      if (IsMoment(table, column)) moments.columns.push_back(session.QuoteIdentifier(column.name));
    }
  } catch (const Error& error) {
    if (error.Number() != errors::kNoSuchTable) throw;
  }
  return moments;
}

// The pieces that the columns give, with the separator between them.
template <typename Piece>
std::string ForEach(const MomentColumns& moments, const char* separator, Piece&& piece) {
  std::string text;
  for (const std::string& column : moments.columns) text += (text.empty() ? "" : separator) + piece(column);
  return text;
}

std::int64_t Count(DriverSession& session, const MomentColumns& moments) {
  if (moments.columns.empty()) return 0;
  const std::string counts = ForEach(
      moments, "+", [](const std::string& column) { return "count(case when " + column + kIsOld + " then 1 end)"; });
  const auto query = session.Prepare("select " + counts + " from " + moments.table);
  query->Step();
  return static_cast<std::int64_t>(query->Value(0).ToDouble());
}

void Rewrite(DriverSession& session, const MomentColumns& moments) {
  const std::string assignments = ForEach(moments, ", ", [](const std::string& column) {
    return column + " = case when " + column + kIsOld + " then " + column + "||' 00:00:00' else " + column + " end";
  });
  const std::string condition = ForEach(moments, " or ", [](const std::string& column) { return column + kIsOld; });
  const auto update = session.Prepare("update " + moments.table + " set " + assignments + " where " + condition);
  Execution(*update).Run();
}

}  // namespace

std::int64_t CountOldMidnights(DriverSession& session, const LocalTable& table) {
  return Count(session, MomentColumnsOf(session, table));
}

std::vector<std::pair<std::string, std::int64_t>> RewriteOldMidnights(DriverSession& session) {
  std::vector<std::pair<std::string, std::int64_t>> rewritten;
  const auto holdsSome = [&](const LocalTable& table) { return CountOldMidnights(session, table) > 0; };
  if (std::ranges::none_of(LocalTables(), holdsSome)) return rewritten;
  session.Begin();
  session.Timeout(std::chrono::seconds(0));  // nobody is waited for any more, and a large table takes its time
  std::string table;
  try {
    for (const LocalTable& local : LocalTables()) {
      table = local.name;
      const MomentColumns moments = MomentColumnsOf(session, local);
      const std::int64_t count = Count(session, moments);
      if (count == 0) continue;
      Rewrite(session, moments);
      rewritten.emplace_back(local.name, count);
    }
    session.Commit();
  } catch (Error& error) {
    session.Rollback();
    error.With("table", table);
    if (error.Number() == errors::kIntegrity) {
      error.With("what to do",
                 "two rows differ in the form of a midnight alone: copy the table in full, or delete "
                 "one of them, then run \"qmxadmin init\" again");
    }
    throw;
  }
  return rewritten;
}

}  // namespace qmx
