// The actions of a working day, for each group of tables, and how often a day has each.
#pragma once

#include <map>
#include <string>

#include "tool/table_writer.h"

namespace orvan {

// The file to change, and the random numbers.
class Workshop {
 public:
  Workshop(std::shared_ptr<Database> database, const Moment& today, const Random& dice)
      : random(dice), today(today), database_(std::move(database)) {}

  TableWriter& Table(std::string_view code);

  std::optional<std::string> Pick(std::string_view code, const std::string& filter = "1") {
    return Table(code).Pick(random, filter);
  }

  // Returns one column of a random record; "" if the table is empty.
  std::string PickValue(std::string_view code, std::string_view column, const std::string& filter = "1");

  // Changes a random record that matches the filter, if there is one.
  void ChangeOne(std::string_view code, Fields fields, const std::string& filter = "1");
  void DeleteOne(std::string_view code, const std::string& filter = "1");
  void DeleteOneAndInsertItAgain(std::string_view code);

  // Returns an unused code for the column: the prefix and a number. Nothing if no try finds one.
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
