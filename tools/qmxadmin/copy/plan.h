// Which table is copied when: in the order in which they are named, but calendars after employees.
//
// Only the calendars that local employees have are copied. Where employees are to be copied as well, calendars wait for
// them, and are not copied where that failed: a full copy would drop the calendars of employees that are missing.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qmx {

class CopyPlan {
 public:
  explicit CopyPlan(const std::vector<std::string>& tables);  // codes, or calendars' extended forms

  // The next one to start, by its place in the list, which then counts as started. Nothing while what is left has to
  // wait, and once nothing is left.
  std::optional<std::size_t> Next();

  void Ended(std::size_t table, bool copied);

 private:
  enum class State { Waiting, Started, Copied, Failed };
  bool MayStart(std::size_t table) const;

  std::vector<State> states_;
  std::vector<bool> areCalendars_;
  std::vector<std::size_t> employees_;
};

// The table code of a table as it is named for a copy: "tcccp030" of "tcccp030=E1=E".
std::string CodeOf(const std::string& table);

}  // namespace qmx
