#include "tool/make.h"

#include <filesystem>

#include "binding/failure.h"
#include "erp/schema.h"
#include "tool/making.h"

namespace orvan {
namespace {

constexpr char kSource[] = "orvan-sandbox";

std::vector<Maker> AllMakers() {
  std::vector<Maker> all;
  for (auto group : {MasterDataMakers, CalendarMakers, InstallationMakers, OrderMakers})
    for (const Maker& maker : group()) all.push_back(maker);
  return all;
}

void Require(const Sizes& sizes) {
  const int atLeastOne[] = {sizes.serviceTypes, sizes.centers,   sizes.areas,          sizes.skills,
                            sizes.employees,    sizes.calendars, sizes.configurations, sizes.addresses};
  for (const int size : atLeastOne)
    if (size < 1)
      throw Failure(QMX_E_INVALID_CALL, kSource,
                    "Orders need service types, centers, areas, skills, employees, addresses, calendars and "
                    "configurations: make at least one of each.");
}

void Fill(const std::string& path, const Plan& plan) {
  const auto database = Database::Create(path);
  // An incomplete file has no value, so writing it is fast and unsafe.
  database->Execute("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; BEGIN");
  database->Execute(CreateClockSql());
  for (const Table& table : AllTables()) database->Execute(CreateTableSql(table));
  const World world = MakeWorld(plan);
  for (const Maker& maker : AllMakers()) {
    TableWriter table(database, maker.code);
    maker.make(world, table);
  }
  for (const Table& table : AllTables()) database->Execute(CreateAuditSql(table));
  // Copies read while the simulated company writes.
  database->Execute("COMMIT; PRAGMA journal_mode = WAL");
}

}  // namespace

std::vector<TableCount> CountRecords(const std::string& path) {
  const auto database = Database::OpenToRead(path);
  std::vector<TableCount> counts;
  for (const Table& table : AllTables()) {
    Statement count(database, "SELECT count(*) FROM " + std::string(table.code));
    count.Step();
    counts.push_back({std::string(table.code), std::string(table.description), count.Whole(0)});
  }
  return counts;
}

void MakeSandbox(const std::string& path, const Plan& plan, bool replace) {
  namespace fs = std::filesystem;
  Require(plan.sizes);
  if (fs::exists(path) && !replace)
    throw Failure(QMX_E_INVALID_CALL, kSource,
                  "\"" + path + "\" exists already. Choose another name, or say --replace to lose what is in it.");
  const std::string unfinished = path + ".unfinished";
  fs::remove(unfinished);
  try {
    Fill(unfinished, plan);
    for (const char* companion : {"-wal", "-shm"}) fs::remove(path + companion);
    fs::rename(unfinished, path);
  } catch (...) {
    std::error_code ignored;
    for (const char* part : {"", "-wal", "-shm"}) fs::remove(unfinished + part, ignored);
    throw;
  }
}

}  // namespace orvan
