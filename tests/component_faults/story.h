// A text for people of what faults left and reported. What was left before is not shown again.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "tests/component_faults/wrong_answers.h"

namespace qmx::test {

class Story {
 public:
  explicit Story(const std::string& title) : text_(title + '\n') {}

  void Add(const std::string& name, const Found& found) {
    const auto known = std::ranges::find(left_, found.left);
    const bool isNew = known == left_.end();
    text_ += "\n" + name + ": leaves " + std::to_string(known - left_.begin() + 1) + '\n';
    for (const std::string& chain : found.reported) text_ += "  " + chain + '\n';
    if (!isNew) return;
    left_.push_back(found.left);
    for (const std::string& line : found.left) text_ += "    " + line + '\n';
  }

  const std::string& Text() const { return text_; }

 private:
  std::string text_;
  std::vector<std::vector<std::string>> left_;
};

}  // namespace qmx::test
