// The literals of a statement's text, taken out of it, so that texts which differ in them alone can share a prepared
// statement.
//
// A literal is taken out only where a parameter means exactly the same to every database system:
//
//   select ... from ... where NAME = LITERAL and NAME <= LITERAL ... order by NAME ...
//   delete from NAME where NAME = LITERAL and ...
//   insert into NAME (NAME, ...) values (LITERAL, ...)
//
// with whole texts and 32-bit integers as literals. Whatever else a text holds (comments, "or", a second statement, a
// backslash, a number with a point, a text with a word before or behind it ...) leaves it as it stands.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/variant.h"

namespace qmx {

struct StatementShape {
  std::string text;             // with a parameter for each literal: "?" or, for an integer, what the database needs
  std::vector<Variant> values;  // the literals, in order: texts and integers
};

// Nothing where the text must be sent as it stands.
std::optional<StatementShape> ShapeOf(std::string_view statement, std::string_view integerParameter = "?");

}  // namespace qmx
