// One day's intervals as a doubly linked list inside an array: a second way to combine them, written on its own, that
// the calendar's ordered array must always agree with.
#pragma once

#include <cstdint>
#include <vector>

namespace qmx::test {

class LinkedListDay {
 public:
  struct Element {
    std::int32_t stime = 0;
    std::int32_t etime = 0;
    std::int32_t nextpos = -1;
    std::int32_t prevpos = -1;
  };

  LinkedListDay(std::int32_t stime, std::int32_t etime);  // the day's first interval

  void CheckSubAndInsertModify(std::int32_t S, std::int32_t E);
  void ReallignSubArray();

  // In list order.
  std::vector<Element> InOrder() const;

 private:
  std::int32_t Append(std::int32_t S, std::int32_t E);
  Element& At(std::int32_t index) { return SubArray[static_cast<std::size_t>(index)]; }

  std::int32_t first = 0;
  std::int32_t subcount = 1;
  std::vector<Element> SubArray;
};

}  // namespace qmx::test
