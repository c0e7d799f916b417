// The rows of one listing, streamed: the statement is at most one row ahead of the last returned record.
#pragma once

#include "erp/record.h"

namespace orvan {

class Enumeration : public Component<Enumeration> {
 public:
  static constexpr char kName[] = "java.util.Enumeration";

  // The statement returns the table's columns, in their order.
  Enumeration(const Table& table, Statement rows) : table_(table), rows_(std::move(rows)) {}

  static const auto& Methods() {
    static constexpr Method methods[] = {{"hasMoreElements", 0, &Enumeration::HasMoreElements},
                                         {"nextElement", 0, &Enumeration::NextElement}};
    return methods;
  }

 private:
  void HasMoreElements(Arguments, Result result);
  void NextElement(Arguments, Result result);
  bool OnRow();

  enum class Place { Before, OnRow, AtEnd };
  const Table& table_;
  Statement rows_;
  Place place_ = Place::Before;
  Ref<Record> last_;  // used again unless it was kept
};

}  // namespace orvan
