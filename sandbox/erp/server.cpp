// The sandbox ERP: Orvan's components over one SQLite file, for trying things out and for tests.
#include "binding/server.h"

#include "erp/audit.h"
#include "erp/manager.h"
#include "erp/record.h"

extern "C" QMX_EXPORT const qmx_component_server* QMX_COMPONENT_SERVER_ENTRY(const qmx_component_host* host,
                                                                             qmx_error* error) {
  using namespace orvan;
  std::vector<ServedClass> classes;
  for (const Table& table : AllTables()) {
    classes.push_back({std::string(table.manager), [&table] { return new Manager(table); }});
    classes.push_back({std::string(table.record), [&table] { return new Record(table); }});
  }
  classes.push_back(Serving<Criteria>());
  classes.push_back(Serving<Period>());
  classes.push_back(Serving<Parameter>());
  classes.push_back(Serving<AuditReader>());
  classes.push_back(Serving<RecordStatus>());
  return Serve(host, error, "Orvan sandbox ERP", std::move(classes));
}
