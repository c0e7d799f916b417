// A connection text: "keyword=value;keyword=value".
//
// Keywords compare without regard to case and to blanks around them. A value may be in double or single quotes (doubled
// inside) or in braces ("}" doubled inside). The last of two equal keywords counts. A missing "=", keyword or closing
// quote is error 5, which names the place. The error never shows a value, which may be a password.
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

  // The only form for logs and errors. "***" replaces every value but those of keywords that are known to hold no
  // secret. After a password without quotes it also replaces unknown keywords, because they may be the rest of a
  // password that holds a ";".
  const std::string& Masked() const { return masked_; }

  // What "***" replaces in it: values, and keywords that may be the rest of a password.
  const std::vector<std::string>& Secrets() const { return secrets_; }

  // The same text with one more keyword. The value is braced if necessary.
  ConnectionText With(std::string_view keyword, std::string_view value) const;

 private:
  std::string text_;
  std::string masked_;
  std::vector<std::string> secrets_;
  std::vector<std::pair<std::string, std::string>> pairs_;
};

}  // namespace qmx
