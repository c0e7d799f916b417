#include "platform/sql_statement.h"

#include <algorithm>
#include <array>

#include "platform/error.h"
#include "platform/names.h"

namespace qmx {
namespace {

struct Token {
  enum class Kind { End, Word, QuotedName, Text, Symbol };
  Kind kind = Kind::End;
  std::string_view text;  // with its quotes

  bool Is(std::string_view word) const { return kind == Kind::Word && SameName(text, word); }
  bool IsSymbol(char symbol) const { return kind == Kind::Symbol && text[0] == symbol; }
};

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f'; }

bool IsWordPart(char c) {
  const char folded = FoldLetter(c);
  return (folded >= 'a' && folded <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

class Tokens {
 public:
  explicit Tokens(std::string_view text) : rest_(text) {}

  Token Next() {
    SkipBlanksAndComments();
    if (rest_.empty()) return {};
    const char first = rest_[0];
    if (first == '\'') return Take(Token::Kind::Text, Enclosed('\''));
    if (first == '"' || first == '`') return Take(Token::Kind::QuotedName, Enclosed(first));
    if (first == '[') return Take(Token::Kind::QuotedName, Enclosed(']'));
    if (!IsWordPart(first)) return Take(Token::Kind::Symbol, 1);
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), IsWordPart);
    return Take(Token::Kind::Word, static_cast<std::size_t>(end - rest_.begin()));
  }

 private:
  Token Take(Token::Kind kind, std::size_t length) {
    const Token token{kind, rest_.substr(0, length)};
    rest_.remove_prefix(length);
    return token;
  }

  // The length of what begins with a quote, to its closing one or to the end; a doubled quote does not close.
  std::size_t Enclosed(char closing) const {
    for (std::size_t at = 1; at < rest_.size(); ++at) {
      if (rest_[at] != closing) continue;
      if (at + 1 == rest_.size() || rest_[at + 1] != closing) return at + 1;
      ++at;
    }
    return rest_.size();
  }

  void SkipTo(std::string_view end) {
    const std::size_t at = rest_.find(end, 2);
    rest_.remove_prefix(at == std::string_view::npos ? rest_.size() : at + end.size());
  }

  void SkipBlanksAndComments() {
    for (;;) {
      const auto first = std::find_if_not(rest_.begin(), rest_.end(), IsBlank);
      rest_.remove_prefix(static_cast<std::size_t>(first - rest_.begin()));
      if (rest_.starts_with("--")) {
        SkipTo("\n");
      } else if (rest_.starts_with("/*")) {
        SkipTo("*/");
      } else {
        return;
      }
    }
  }

  std::string_view rest_;
};

// A name without its quotes; nothing if the token is not a name.
std::optional<std::string> NameOf(const Token& token) {
  if (token.kind == Token::Kind::Word) return std::string(token.text);
  if (token.kind != Token::Kind::QuotedName || token.text.size() < 3) return std::nullopt;
  const char closing = token.text.back();
  std::string name;
  for (std::size_t at = 1; at + 1 < token.text.size(); ++at) {
    name += token.text[at];
    if (token.text[at] == closing) ++at;
  }
  return name;
}

}  // namespace

void RequireOneStatement(const std::string& statement) {
  Tokens tokens(statement);
  Token token = tokens.Next();
  if (token.kind == Token::Kind::End || token.IsSymbol(';')) {
    throw Error(errors::kCommand, "SQL text", "The text holds no statement.").With("statement", statement);
  }
  if (statement.find(';') == std::string::npos) return;
  while (token.kind != Token::Kind::End && !token.IsSymbol(';')) token = tokens.Next();
  while (token.IsSymbol(';')) token = tokens.Next();
  if (token.kind == Token::Kind::End) return;
  throw Error(errors::kCommand, "SQL text",
              "A text may hold one statement; a second one begins at \"" + std::string(token.text) + "\".")
      .With("statement", statement);
}

std::string_view StatementAlone(std::string_view text) {
  if (text.find(';') == std::string_view::npos) return text;
  Tokens tokens(text);
  for (Token token = tokens.Next(); token.kind != Token::Kind::End; token = tokens.Next()) {
    if (token.IsSymbol(';')) return text.substr(0, static_cast<std::size_t>(token.text.data() - text.data()));
  }
  return text;
}

std::string_view FirstWord(std::string_view statement) {
  const Token token = Tokens(statement).Next();
  return token.kind == Token::Kind::Word ? token.text : std::string_view();
}

std::optional<std::string> TableOfRows(std::string_view statement) {
  constexpr std::array<std::string_view, 5> kNotRowByRow = {"union", "intersect", "except", "group", "having"};
  Tokens tokens(statement);
  if (!tokens.Next().Is("select") || !tokens.Next().IsSymbol('*') || !tokens.Next().Is("from")) return std::nullopt;
  const std::optional<std::string> table = NameOf(tokens.Next());
  Token token = tokens.Next();
  const bool alone = token.kind == Token::Kind::End || token.IsSymbol(';') || token.Is("where") || token.Is("order");
  if (!alone) return std::nullopt;
  for (int depth = 0; token.kind != Token::Kind::End; token = tokens.Next()) {
    if (token.IsSymbol('(')) ++depth;
    if (token.IsSymbol(')')) --depth;
    const auto isThis = [&](std::string_view word) { return token.Is(word); };
    if (depth == 0 && std::any_of(kNotRowByRow.begin(), kNotRowByRow.end(), isThis)) return std::nullopt;
  }
  return table;
}

}  // namespace qmx
