// One list of everything that was called, in order, as readable lines. Components, the database and the text files of a
// test write into the same list.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/variant.h"

namespace qmx::test {

class CallLog {
 public:
  void Add(std::string line) { lines_.push_back(std::move(line)); }
  void Clear() { lines_.clear(); }

  const std::vector<std::string>& Lines() const { return lines_; }
  std::vector<std::string> StartingWith(std::initializer_list<std::string_view> prefixes) const;
  std::size_t Count(std::string_view line) const;

 private:
  std::vector<std::string> lines_;
};

// A value so that its kind shows: "text", 7, 7.0, true, 2026-11-20, null, empty. Objects show as `object`.
std::string Show(const Variant& value, std::string_view object = "object");

}  // namespace qmx::test
