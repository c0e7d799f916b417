// An SQL text built by concatenation that remembers which pieces are values.
//
// The text is what the trace, the logs and the database see. A value goes in as its text: between quotes when a quote
// is open where it goes in, else bare. No quote is doubled. A quoted value that holds a quote and a bare one that is no
// number would change what the statement means, so such a text is marked as broken and is refused, with the command
// error, by whatever is asked to run it. A NUL character breaks it as well.
#pragma once

#include <string>
#include <string_view>

#include "platform/variant.h"

namespace qmx {

class SqlText {
 public:
  SqlText(const char* fixed) : text_(fixed) {}
  SqlText(std::string_view fixed) : text_(fixed) {}
  SqlText(std::string fixed) : text_(std::move(fixed)) {}

  SqlText& Append(std::string_view fixed);  // a piece of the statement, as it stands
  SqlText& Value(const Variant& value);     // a value; raises 13 for an object

  const std::string& Text() const { return text_; }

  // Raises the command error, naming the value and with the statement as a detail, when a value broke the text.
  void Check() const;

 private:
  std::string text_;
  std::string broken_;  // why, or empty
};

}  // namespace qmx
