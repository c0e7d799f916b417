// An SQL text built by concatenation that keeps its fixed pieces and its values apart.
//
// The text is what the trace, the logs and errors show: each value as its text, between quotes when a quote is open
// where it goes in, else bare. No quote is doubled. A quoted value that holds a quote and a bare one that is no number
// would change what the statement means, so such a text is marked as broken, and running it is refused with the command
// error. A NUL character in a value breaks it as well.
//
// Texts of the same shape differ in their values only and can share a prepared statement, which takes the values as
// parameters. So a value must be in a place where a parameter means the same: compared with a column or inserted.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/variant.h"

namespace qmx {

// A text without its values.
struct SqlShape {
  enum class ValueKind { Text, Integer, Moment };
  struct Place {
    std::size_t at = 0;  // in `fixed`
    ValueKind kind = ValueKind::Text;
    bool operator==(const Place&) const = default;
  };

  // With "?" for each value and its quotes or, for an integer and for "=" with a moment, with what the database needs.
  // Nothing if there is no value, or if a value is only a part of a literal.
  std::optional<std::string> SharedForm(std::string_view integerParameter, std::string_view equalsMoment = "=?") const;

  // Whether the value is a moment that something is equal to: "stdt='2026-11-05'".
  bool IsEqualMoment(const Place& place) const;

  bool operator==(const SqlShape&) const = default;

  std::string fixed;  // the pieces without the values
  std::vector<Place> places;
};

// The moment that a value of a place for moments is or, for a text, reads as.
std::optional<DateTime> MomentOf(const Variant& value);

class SqlText {
 public:
  using MomentText = std::function<std::string(DateTime)>;

  SqlText(const char* fixed) : SqlText(std::string_view(fixed)) {}
  SqlText(const std::string& fixed) : SqlText(std::string_view(fixed)) {}
  SqlText(std::string_view fixed) { Append(fixed); }

  SqlText& Restart(std::string_view fixed);  // as if new, in the memory that it has
  SqlText& Append(std::string_view fixed);   // a piece of the statement
  SqlText& Value(const Variant& value);      // a value; raises 13 for an object
  SqlText& Moment(const Variant& value);     // the same; a quoted text that reads as a moment is meant as one

  std::string Text() const;                          // made anew by each call
  std::string Text(const MomentText& moment) const;  // with quoted moments in a database system's own form

  const SqlShape& Shape() const { return shape_; }

  // The values of the shared form: 32-bit integers; quoted values as moments or texts. A bare number of
  // any other form has no parameter: what its digits mean differs from system to system.
  std::span<const Variant> Values() const { return values_; }

  // Raises the command error, naming the value and with the statement as a detail, when a value broke the text.
  void Check() const;

 private:
  SqlText& Put(Variant value, SqlShape::ValueKind kind);

  SqlShape shape_;
  std::vector<Variant> values_;  // one for each place
  bool isQuoteOpen_ = false;
  std::string broken_;  // why, or empty
};

}  // namespace qmx
