// parts ERP [benchmark options]: measures parts of a copy on the first service order of the sandbox ERP's file.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <iostream>

#include "platform/components/installed_components.h"
#include "platform/database.h"
#include "platform/platform.h"
#include "platform/system/clock.h"
#include "platform/system/event_log.h"
#include "platform/system/failure_report.h"
#include "platform/system/text_files.h"
#include "schema/local_tables.h"
#include "tests/support/data_copy_inside.h"
#include "tests/support/ignored_events.h"

namespace {

using namespace qmx;

const LocalTable& ServiceOrders() {
  const auto& tables = LocalTables();
  return *std::find_if(tables.begin(), tables.end(), [](const LocalTable& table) { return table.name == "tssoc200"; });
}

// A database that discards all rows, so that only the program's own work is measured.
class NowhereStatement : public DriverStatement {
 public:
  const std::vector<ColumnDescription>& Columns() const override { return none_; }
  void Bind(std::size_t, const Variant& value) override { benchmark::DoNotOptimize(&value); }
  bool Step() override { return false; }
  Variant Value(std::size_t) override { return {}; }
  std::int64_t RowsAffected() const override { return 1; }
  void Reset() noexcept override {}

 private:
  std::vector<ColumnDescription> none_;
};

class NowhereSession : public DriverSession {
 public:
  std::unique_ptr<DriverStatement> Prepare(const std::string&) override { return std::make_unique<NowhereStatement>(); }
  TableDescription Describe(const std::string& table) override {
    TableDescription description{table, {}, {0}};
    for (const LocalColumn& column : ServiceOrders().columns) description.columns.push_back({column.name, column.type});
    return description;
  }
  std::string QuoteIdentifier(const std::string& name) const override { return name; }
  std::string System() const override { return "nowhere"; }
  std::string Catalog() override { return {}; }
  void SelectCatalog(const std::string&) override {}
  void Timeout(std::chrono::seconds) override {}
  void Begin() override {}
  void Rollback() override {}
  void Commit() override {}
  void Close() override {}
};

class NowhereDriver : public Driver {
 public:
  std::string Form() const override { return "Provider=Nowhere"; }
  bool Serves(const ConnectionText&) const override { return true; }
  std::unique_ptr<DriverSession> Open(const ConnectionText&) override { return std::make_unique<NowhereSession>(); }
};

// A copy of the service orders that has just read the first record and opened the local table.
struct Copy {
  explicit Copy(const std::string& erp) {
    manager.Call("initialize", "OrvanSandbox, " + erp);
    record = manager.Call("listServiceOrders", "", "ZZZZZZZZZ").ToObject().Call("nextElement").ToObject();
    inside.Connect("Provider=Nowhere");
    row.Open("tssoc200", inside.LocalConnection(), kCursorKeyset, kLockOptimistic, kCommandTable);
    row.AddNew();
  }

  SystemClock clock;
  SystemTextFiles files;
  SystemEventLog eventLog{clock, files};
  StandardErrorReport failures;
  InstalledComponents components{clock};
  NowhereDriver driver;
  Database database{{&driver}};
  Platform platform{clock, files, eventLog, components, database, failures};
  modDeclarations declarations;
  test::IgnoredEvents events;
  clsDataCopy engine{platform, declarations, events};
  test::DataCopyInside inside{engine};
  Object manager = components.CreateObject("ServiceOrders.ServiceOrdersManager");
  Object record;
  Recordset row{nullptr};
};

void AddBenchmarks(Copy& copy) {
  const auto add = [](const char* name, auto body) {
    benchmark::RegisterBenchmark(name, [body](benchmark::State& state) {
      for (auto iteration : state) body();
    });
  };
  add("member call, text",
      [&copy, member = Member("getServiceOrder")] { benchmark::DoNotOptimize(copy.record.Call(member)); });
  add("member call, number",
      [&copy, member = Member("getOrderDuration")] { benchmark::DoNotOptimize(copy.record.Call(member)); });
  add("column lookup", [&copy, column = Column("ract")] { benchmark::DoNotOptimize(copy.row.Fields(column)); });
  add("column lookup, the first", [&copy] { benchmark::DoNotOptimize(copy.row.Fields(Column("ract"))); });
  add("row of 32 columns, getters to bound parameters", [&copy] {
    copy.inside.SetServiceOrderFields(copy.row, copy.record);
    copy.row.AddNew();
  });
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 2) {
    std::cerr << "usage: parts ERP [benchmark options]\n";
    return 2;
  }
  try {
    Copy copy(argv[1]);
    AddBenchmarks(copy);
    benchmark::RunSpecifiedBenchmarks();
  } catch (const Error& failure) {
    std::cerr << "parts: " << failure.Description() << '\n';
    return 1;
  }
}
