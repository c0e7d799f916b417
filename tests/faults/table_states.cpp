#include "tests/faults/table_states.h"

#include <algorithm>
#include <map>
#include <random>
#include <sstream>

namespace qmx::test::faults {
namespace {

constexpr int kServiceTypes = 240;
constexpr int kChanges = 120;

Rows Lines(const std::string& text) {
  std::istringstream lines(text);
  Rows rows;
  for (std::string line; std::getline(lines, line);) rows.push_back(line);
  return rows;
}

Rows RowsOfTheErp(const Company& company) {
  return Lines(
      company.Value("select group_concat(cstp || '|' || \"desc\" || '|' || proc || '|' || ract, char(10)) from "
                    "(select * from tsmdm030 order by cstp)"));
}

std::string Key(const std::string& row) { return row.substr(0, row.find('|')); }

Rows Sorted(const std::map<std::string, std::string>& byKey) {
  Rows rows;
  for (const auto& [key, row] : byKey) rows.push_back(row);
  return rows;
}

}  // namespace

TableStates::TableStates() : company_({{"service-types", kServiceTypes}}) {
  old_ = RowsOfTheErp(company_);
  old_.push_back("ZZ0|Only here|X|Y");
  ChangeTheErp();
  ExpectFull();
  ExpectChanged();
}

void TableStates::ChangeTheErp() {
  Rows rows = old_;
  rows.pop_back();  // which is not the ERP's
  std::shuffle(rows.begin(), rows.end(), std::mt19937(20261122));
  std::string statements;
  for (int change = 0; change < kChanges; ++change) {
    const std::string key = Key(rows[static_cast<std::size_t>(change)]);
    if (change % 8 == 3) {
      statements += "delete from tsmdm030 where cstp = '" + key + "';";
    } else if (change % 8 == 6) {
      statements +=
          "insert into tsmdm030 values ('N" + std::to_string(100 + (change * 37) % 900) + "', 'New', 'NEW', 'NEW');";
    } else {
      statements += "update tsmdm030 set \"desc\" = 'Changed " + key + "' where cstp = '" + key + "';";
    }
  }
  company_.Change(DateTime::FromDate(2002, 1, 1), statements.substr(0, statements.size() - 1));
}

// The old rows, none, then more and more of the listing, whose order is that of the keys.
void TableStates::ExpectFull() {
  const Rows all = RowsOfTheErp(company_);
  full_.push_back(old_);
  for (std::size_t count = 0; count <= all.size(); ++count)
    full_.emplace_back(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count));
}

// One change after the other, in the order of the audit trail.
void TableStates::ExpectChanged() {
  std::map<std::string, std::string> inErp, local;
  for (const std::string& row : RowsOfTheErp(company_)) inErp[Key(row)] = row;
  for (const std::string& row : old_) local[Key(row)] = row;
  changed_.push_back(old_);
  const std::string trail =
      company_.Value("select group_concat(cstp, char(10)) from (select cstp from audit_tsmdm030 order by entry)");
  for (const std::string& key : Lines(trail)) {
    const auto record = inErp.find(key);
    if (record == inErp.end()) {
      local.erase(key);
    } else {
      local[key] = record->second;
    }
    changed_.push_back(Sorted(local));
  }
}

}  // namespace qmx::test::faults
