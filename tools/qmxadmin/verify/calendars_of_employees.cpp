#include "tools/qmxadmin/verify/calendars_of_employees.h"

namespace qmx {

std::vector<std::string> CalendarsOfEmployees(LocalDatabase& local) {
  const auto records = local.Select("select distinct ccal from tsmdm140 where ccal <> ''");
  std::vector<std::string> calendars;
  for (; !records->Eof(); records->MoveNext()) calendars.push_back(records->Fields(std::size_t{0}).Value().ToText());
  records->Close();
  return calendars;
}

}  // namespace qmx
