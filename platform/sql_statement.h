// Reads what the record-set layer needs from a statement's text, with a small tokenizer of common SQL: quoted texts and
// identifiers, comments, words, symbols.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qmx {

// Raises the command error for a text that holds no statement, and for one that holds more after a ";" than blanks and
// comments.
void RequireOneStatement(const std::string& statement);

// The statement in a text, without the ";" after it and what follows.
std::string_view StatementAlone(std::string_view text);

// A word such as "select"; empty if the text begins with anything else.
std::string_view FirstWord(std::string_view statement);

// The table whose rows a query shows one by one and whole, so that they can be changed through it: "select * from T",
// with a condition and an order or without. Nothing for any other text; it is read-only then.
std::optional<std::string> TableOfRows(std::string_view statement);

}  // namespace qmx
