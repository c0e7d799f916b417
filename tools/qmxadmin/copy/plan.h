// The order of several copies: as the tables are named, but calendars after employees.
//
// Only the calendars of local employees are copied. If employees are copied too, calendars wait for them. If the copy
// of the employees fails, calendars are not copied, because a full copy would drop the calendars of missing employees.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qmx {

class CopyPlan {
 public:
  explicit CopyPlan(const std::vector<std::string>& tables);  // table codes, or the extended form of calendars

  // Returns the index of the next table and marks it as started. Returns nothing if all other tables must wait, or if
  // none is left.
  std::optional<std::size_t> Next();

  void Ended(std::size_t table, bool copied);

 private:
  enum class State { Waiting, Started, Copied, Failed };
  bool MayStart(std::size_t table) const;

  std::vector<State> states_;
  std::vector<bool> areCalendars_;
  std::vector<std::size_t> employees_;
};

// Returns the table code of a table argument: "tcccp030" for "tcccp030=E1=E".
std::string CodeOf(const std::string& table);

}  // namespace qmx
