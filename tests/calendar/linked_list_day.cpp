#include "tests/calendar/linked_list_day.h"

namespace qmx::test {

LinkedListDay::LinkedListDay(std::int32_t stime, std::int32_t etime) : SubArray{{stime, etime, -1, -1}} {}

std::int32_t LinkedListDay::Append(std::int32_t S, std::int32_t E) {
  SubArray.resize(static_cast<std::size_t>(subcount) + 1);
  At(subcount) = {S, E, -1, -1};
  return subcount;
}

void LinkedListDay::CheckSubAndInsertModify(std::int32_t S, std::int32_t E) {
  if (first == -1) return;
  std::int32_t i = first;
  while (true) {
    const std::int32_t s = At(i).stime;
    const std::int32_t e = At(i).etime;
    if (S >= s && E <= e) {  // inside
      return;
    } else if (S < s && E < e) {  // starts before, ends before the end
      const std::int32_t n = Append(S, E);
      if (At(i).prevpos == -1) {
        first = n;
        At(n).prevpos = -1;
        At(n).nextpos = i;
      } else {
        At(At(i).prevpos).nextpos = n;
        At(n).prevpos = At(i).prevpos;
        At(n).nextpos = i;
        At(i).prevpos = n;
      }
      ++subcount;
      return;
    } else if (S < s && E == e) {  // starts before, same end
      At(i).stime = S;
      return;
    } else if (S < s && E > e) {  // covers
      At(i).stime = S;
      CheckSubAndInsertModify(e, E);
      return;
    } else if (s <= S && S < e && E > e) {  // starts inside, ends beyond
      CheckSubAndInsertModify(e, E);
      return;
    } else if (S >= e) {  // starts at or after the end
      if (At(i).nextpos == -1) {
        const std::int32_t n = Append(S, E);
        At(n).nextpos = -1;
        At(n).prevpos = i;
        At(i).nextpos = n;
        ++subcount;
        return;
      }
      i = At(i).nextpos;
    }
  }
}

void LinkedListDay::ReallignSubArray() {
  if (subcount < 1) return;
  std::vector<Element> work;
  for (std::int32_t x = first; x != -1; x = At(x).nextpos) {
    if (!work.empty() && work.back().etime == At(x).stime) {
      work.back().etime = At(x).etime;
    } else {
      work.push_back(At(x));
    }
  }
  subcount = static_cast<std::int32_t>(work.size());
  SubArray = work;
  first = 0;
  for (std::int32_t k = 0; k < subcount; ++k) {
    At(k).nextpos = k + 1 < subcount ? k + 1 : -1;
    At(k).prevpos = k - 1;
  }
}

std::vector<LinkedListDay::Element> LinkedListDay::InOrder() const {
  std::vector<Element> ordered;
  for (std::int32_t x = first; x != -1; x = SubArray[static_cast<std::size_t>(x)].nextpos) {
    ordered.push_back(SubArray[static_cast<std::size_t>(x)]);
  }
  return ordered;
}

}  // namespace qmx::test
