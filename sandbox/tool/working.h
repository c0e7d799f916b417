// What happens in the company on a working day: a list of actions for each group of tables, and how often a day brings
// each.
#pragma once

#include <map>
#include <string>

#include "tool/table_writer.h"

namespace orvan {

// The file that is worked in, and the dice.
class Workshop {
 public:
  Workshop(std::shared_ptr<Database> database, const Moment& today, const Random& dice)
      : random(dice), today(today), database_(std::move(database)) {}

  TableWriter& Table(std::string_view code);

  std::optional<std::string> Pick(std::string_view code, const std::string& filter = "1") {
    return Table(code).Pick(random, filter);
  }

  // One column of a random record; "" from an empty table.
  std::string PickValue(std::string_view code, std::string_view column, const std::string& filter = "1");

  // Changes a random record for which the filter holds, if there is one.
  void ChangeOne(std::string_view code, Fields fields, const std::string& filter = "1");
  void DeleteOne(std::string_view code, const std::string& filter = "1");
  void DeleteOneAndInsertItAgain(std::string_view code);

  // A code that the column does not hold yet: the prefix and a number. Nothing when the dice find none.
  std::optional<std::string> FreeCode(std::string_view code, std::string_view column, std::string_view prefix,
                                      int width);

  Random random;
  Moment today;

 private:
  std::shared_ptr<Database> database_;
  std::map<std::string, TableWriter, std::less<>> tables_;
};

struct Action {
  int timesADay;
  void (*act)(Workshop& shop);
};

std::vector<Action> MasterDataActions();
std::vector<Action> CalendarActions();
std::vector<Action> OrderActions();

}  // namespace orvan
