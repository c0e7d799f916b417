#include "platform/sql_literals.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "platform/names.h"

namespace qmx {
namespace {

constexpr std::size_t kMostLiterals = 64;  // the systems take thousands of parameters, and nobody writes so many

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool IsWordStart(char c) {
  const char folded = FoldLetter(c);
  return (folded >= 'a' && folded <= 'z') || c == '_';
}

bool IsWordPart(char c) { return IsWordStart(c) || IsDigit(c); }

// Takes a text apart from its beginning. What does not stand next is not taken.
class Reader {
 public:
  Reader(std::string_view text, std::string_view integerParameter) : text_(text), integerParameter_(integerParameter) {
    Take(0);
  }

  bool Keyword(std::string_view keyword) {
    const std::size_t length = WordLength();
    return SameName(Rest().substr(0, length), keyword) && Take(length);
  }

  bool Symbol(std::string_view symbol) { return Rest().starts_with(symbol) && Take(symbol.size()); }

  // A word, or a name between double quotes.
  bool Identifier() {
    const std::size_t length = Rest().starts_with('"') ? EnclosedLength('"') : WordLength();
    return length > 0 && Take(length);
  }

  bool Comparison() {
    return Symbol("<=") || Symbol(">=") || Symbol("<>") || Symbol("=") || Symbol("<") || Symbol(">");
  }

  bool Literal() { return shape_.values.size() < kMostLiterals && (Text() || Integer()); }

  bool AtEnd() const { return at_ == text_.size(); }

  StatementShape Shape() && {
    shape_.text += text_.substr(copied_);
    return std::move(shape_);
  }

 private:
  std::string_view Rest() const { return text_.substr(at_); }

  bool Take(std::size_t length) {
    at_ += length;
    while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
    return true;
  }

  void TakeLiteral(std::size_t length, Variant value, std::string_view parameter) {
    shape_.text.append(text_.substr(copied_, at_ - copied_)).append(parameter);
    shape_.values.push_back(std::move(value));
    copied_ = at_ + length;
    Take(length);
  }

  std::size_t WordLength() const {
    const std::string_view rest = Rest();
    if (rest.empty() || !IsWordStart(rest[0])) return 0;
    return static_cast<std::size_t>(std::find_if_not(rest.begin(), rest.end(), IsWordPart) - rest.begin());
  }

  // With both quotes, of which a doubled one does not close; 0 where none closes.
  std::size_t EnclosedLength(char quote) const {
    const std::string_view rest = Rest();
    for (std::size_t end = rest.find(quote, 1); end != std::string_view::npos; end = rest.find(quote, end + 2)) {
      if (end + 1 == rest.size() || rest[end + 1] != quote) return end + 1;
    }
    return 0;
  }

  bool Text() {
    const std::size_t length = Rest().starts_with('\'') ? EnclosedLength('\'') : 0;
    if (length == 0) return false;
    const std::string_view enclosed = Rest().substr(1, length - 2);
    std::string value(enclosed);
    for (std::size_t at = value.find('\''); at != std::string::npos; at = value.find('\'', at + 1)) value.erase(at, 1);
    TakeLiteral(length, std::move(value), "?");
    return true;
  }

  // No system reads anything else into digits that nothing but a blank, "," or ")" follows.
  bool Integer() {
    const std::string_view rest = Rest();
    const bool isNegative = rest.starts_with('-');
    const char* const digits = rest.data() + (isNegative ? 1 : 0);
    const char* const end = rest.data() + rest.size();
    if (digits == end || !IsDigit(*digits)) return false;
    std::int32_t value = 0;
    const auto [behind, problem] = std::from_chars(digits, end, value);
    const bool isWhole = behind == end || IsBlank(*behind) || *behind == ',' || *behind == ')';
    if (problem != std::errc() || !isWhole) return false;
    TakeLiteral(static_cast<std::size_t>(behind - rest.data()), isNegative ? -value : value, integerParameter_);
    return true;
  }

  std::string_view text_;
  std::string_view integerParameter_;
  std::size_t at_ = 0;
  std::size_t copied_ = 0;  // into the shape, up to here
  StatementShape shape_;
};

// A column or a table.
bool Name(Reader& reader) {
  do {
    if (!reader.Identifier()) return false;
  } while (reader.Symbol("."));
  return true;
}

template <typename Part>
bool Listed(Reader& reader, Part&& part) {
  do {
    if (!part()) return false;
  } while (reader.Symbol(","));
  return true;
}

bool Conditions(Reader& reader) {
  do {
    if (!Name(reader) || !reader.Comparison() || !reader.Literal()) return false;
  } while (reader.Keyword("and"));
  return true;
}

bool Order(Reader& reader) {
  if (!reader.Keyword("order")) return true;
  return reader.Keyword("by") && Listed(reader, [&] {
           if (!Name(reader)) return false;
           if (!reader.Keyword("asc")) reader.Keyword("desc");
           return true;
         });
}

// What is selected may be anything without a literal.
bool Select(Reader& reader) {
  while (!reader.Keyword("where")) {
    const bool isKnown = reader.Identifier() || reader.Symbol(".") || reader.Symbol(",") || reader.Symbol("*") ||
                         reader.Symbol("(") || reader.Symbol(")");
    if (!isKnown) return false;
  }
  return Conditions(reader) && Order(reader);
}

bool Delete(Reader& reader) {
  return reader.Keyword("from") && Name(reader) && reader.Keyword("where") && Conditions(reader);
}

bool Insert(Reader& reader) {
  return reader.Keyword("into") && Name(reader) && reader.Symbol("(") && Listed(reader, [&] { return Name(reader); }) &&
         reader.Symbol(")") && reader.Keyword("values") && reader.Symbol("(") &&
         Listed(reader, [&] { return reader.Literal(); }) && reader.Symbol(")");
}

}  // namespace

std::optional<StatementShape> ShapeOf(std::string_view statement, std::string_view integerParameter) {
  // Some systems end a text at a NUL character, and some take a backslash for more than a letter.
  const auto holds = [&](char c) { return statement.find(c) != std::string_view::npos; };
  if (holds('\0') || holds('\\')) return std::nullopt;
  Reader reader(statement, integerParameter);
  const bool isKnown = reader.Keyword("select")   ? Select(reader)
                       : reader.Keyword("delete") ? Delete(reader)
                                                  : reader.Keyword("insert") && Insert(reader);
  if (!isKnown || !reader.AtEnd()) return std::nullopt;
  return std::move(reader).Shape();
}

}  // namespace qmx
