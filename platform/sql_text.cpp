#include "platform/sql_text.h"

#include <algorithm>

#include "platform/error.h"

namespace qmx {
namespace {

std::string WhyItBreaks(const std::string& value, bool quoted) {
  if (value.find('\0') != std::string::npos) return "The value holds a NUL character";
  if (quoted && value.find('\'') != std::string::npos) return "The value " + value + " holds a quote";
  if (!quoted && !ParseNumber(value)) return "The value '" + value + "' is no number and stands without quotes";
  return {};
}

}  // namespace

SqlText& SqlText::Append(std::string_view fixed) {
  text_ += fixed;
  return *this;
}

SqlText& SqlText::Value(const Variant& value) {
  const std::string piece = value.ToText();
  const bool quoted = std::count(text_.begin(), text_.end(), '\'') % 2 != 0;
  if (broken_.empty()) broken_ = WhyItBreaks(piece, quoted);
  text_ += piece;
  return *this;
}

void SqlText::Check() const {
  if (broken_.empty()) return;
  throw Error(errors::kCommand, "SQL text", broken_ + ": it would change what the statement means.")
      .With("statement", text_);
}

}  // namespace qmx
