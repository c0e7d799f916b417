// A connection text: "keyword=value;keyword=value".
//
// Keywords compare without regard to case and blanks around; a value may stand in double or single quotes (doubled
// inside) or in braces ("}" doubled inside). The last of two equal keywords holds. What has no "=", no keyword or no
// closing quote is error 5, naming the place; no value is ever part of that error, since it may be a password.
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

  // The only form that may be shown: "***" replaces the value of every PWD and Password, and of every keyword that is
  // not known to hold no secret. Behind a password without quotes it replaces such a keyword as well, since the keyword
  // may be the rest of a password that holds a ";".
  const std::string& Masked() const { return masked_; }

  // What "***" replaces in it: values, and keywords that may be the rest of a password.
  const std::vector<std::string>& Secrets() const { return secrets_; }

  // The same text with one keyword more, its value braced where it needs to be.
  ConnectionText With(std::string_view keyword, std::string_view value) const;

 private:
  std::string text_;
  std::string masked_;
  std::vector<std::string> secrets_;
  std::vector<std::pair<std::string, std::string>> pairs_;
};

}  // namespace qmx
