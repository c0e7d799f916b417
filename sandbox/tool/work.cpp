#include "tool/work.h"

#include "erp/schema.h"
#include "tool/dates.h"
#include "tool/working.h"

namespace orvan {
namespace {

constexpr int kMinutesOfWork = 9 * 60;

// The day's actions in random order.
std::vector<Action> Day(Random& random) {
  std::vector<Action> day;
  for (auto group : {MasterDataActions, CalendarActions, OrderActions})
    for (const Action& action : group())
      for (int i = 0; i < action.timesADay; ++i) day.push_back(action);
  for (std::size_t i = day.size(); i > 1; --i)
    std::swap(day[i - 1], day[static_cast<std::size_t>(random.Between(0, static_cast<int>(i) - 1))]);
  return day;
}

void Pretend(Database& database, const Moment& now) {
  database.Execute("DELETE FROM sandbox_clock; INSERT INTO sandbox_clock VALUES ('" + now.Text() + "')");
}

long long LastEntry(const std::shared_ptr<Database>& database, const Table& table) {
  Statement last(database, "SELECT coalesce(max(entry), 0) FROM " + AuditTable(table));
  last.Step();
  return last.Whole(0);
}

Changes ChangesSince(const std::shared_ptr<Database>& database, const Table& table, long long entry) {
  Statement count(database,
                  "SELECT count(*) FILTER (WHERE change = 'I'), count(*) FILTER (WHERE change = 'U'), "
                  "count(*) FILTER (WHERE change = 'D') FROM " +
                      AuditTable(table) + " WHERE entry > " + std::to_string(entry));
  count.Step();
  return {std::string(table.code), std::string(table.description), count.Whole(0), count.Whole(1), count.Whole(2)};
}

}  // namespace

std::vector<Changes> Work(const WorkOrder& order) {
  const auto database = Database::OpenToWrite(order.path);
  database->Execute("PRAGMA synchronous = NORMAL");
  std::vector<long long> before;
  for (const Table& table : AllTables()) before.push_back(LastEntry(database, table));

  for (int i = 0; i < order.days; ++i) {
    Workshop shop(database, Later(order.today, i), Random(order.seed + static_cast<std::uint64_t>(i), "work"));
    const std::vector<Action> day = Day(shop.random);
    for (std::size_t done = 0; done < day.size(); ++done) {
      database->Execute("BEGIN IMMEDIATE");
      const int minute = static_cast<int>(done * kMinutesOfWork / day.size());
      if (order.from) Pretend(*database, Later(*order.from, i, minute));
      day[done].act(shop);
      database->Execute("COMMIT");
    }
  }
  if (order.from) database->Execute("DELETE FROM sandbox_clock");

  std::vector<Changes> changes;
  for (std::size_t i = 0; i < before.size(); ++i) changes.push_back(ChangesSince(database, AllTables()[i], before[i]));
  return changes;
}

}  // namespace orvan
