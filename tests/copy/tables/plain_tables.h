// What is particular to each table whose copies are the shared steps and nothing else.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tests/support/scripted_components.h"

namespace qmx::test {

// A getter, its column, and a value on both sides. In texts "#" stands for the record's number, so that records differ.
struct PlainField {
  enum class Kind { Text, Whole, Real, Date };
  const char* getter;
  const char* column;
  Kind kind;
  std::string given;   // by the ERP; a date as the numbers of its parts, in the ERP's counting
  std::string stored;  // as tests show it
};

struct PlainTable {
  const char* name;  // of its records
  const char* code;
  const char* manager;
  const char* record;
  const char* listing;
  const char* bounds;                 // of the listing, as they are shown
  std::vector<PlainField> fields;     // in the order in which they are copied
  std::size_t keys;                   // the first ones
  std::vector<std::string> criteria;  // parameters and output fields
  std::string whereOfSelect, whereOfDelete;
  std::string failureOfFullCopy, failureOfChangedCopy;

  Getters Record(ScriptedErp& erp, int number) const;
  Getters Key(ScriptedErp& erp, int number) const;
  std::string Row(int number) const;  // as CopyRig::Rows shows it
  std::vector<std::string> Columns() const;
};

std::ostream& operator<<(std::ostream& out, const PlainTable& table);

const std::vector<PlainTable>& PlainTables();

std::string Numbered(std::string text, int number);  // with the number in place of each "#"

}  // namespace qmx::test
