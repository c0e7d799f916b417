// A connection text: "keyword=value;keyword=value".
//
// Keywords compare without regard to case and blanks around; a value may stand in double or single quotes (doubled
// inside) or in braces. The last of two equal keywords holds. What has no "=" or no closing quote is error 5, naming
// the place.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qmx {

class ConnectionText {
 public:
  explicit ConnectionText(std::string text);

  std::optional<std::string> Get(std::string_view keyword) const;
  const std::vector<std::pair<std::string, std::string>>& Pairs() const { return pairs_; }  // as written, in order
  const std::string& Text() const { return text_; }

  // The text with the value of every PWD and Password replaced by "***": the only form that may be shown.
  std::string Masked() const;

 private:
  std::string text_;
  std::vector<std::pair<std::string, std::string>> pairs_;
};

}  // namespace qmx
