// What the record-set layer reads in a statement's text, with a small tokenizer of common SQL: quoted texts and
// identifiers, comments, words, symbols.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qmx {

// Raises the command error for a text that holds no statement, and for one that holds more after a ";" than blanks and
// comments.
void RequireOneStatement(const std::string& statement);

// Returns the one statement of a text, without the ";" after it and what follows.
std::string_view StatementAlone(std::string_view text);

// Returns a word such as "select"; empty if the text begins with anything else.
std::string_view FirstWord(std::string_view statement);

// The table whose rows a query shows one by one and whole, so that they can be changed through it: "select * from T",
// with a condition and an order or without. Nothing for any other text, whose rows are read-only.
std::optional<std::string> TableOfRows(std::string_view statement);

}  // namespace qmx
