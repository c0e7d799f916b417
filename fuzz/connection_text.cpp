// Connection texts: the same pairs as a plain reader finds, and no byte of a password in the masked text or in an
// error.
//
// The first line is a connection text. The second is the pattern of a password, and the third follows the password. In
// the pattern each letter and digit stands for a byte that occurs nowhere else, so a single one of them that leaks
// shows.
#include "platform/connection_text.h"

#include <cstdint>
#include <vector>

#include "fuzz/input.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "platform/odbc/connection_string.h"

namespace qmx::fuzz {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

using Pairs = std::vector<std::pair<std::string, std::string>>;

bool IsOneOf(char c, std::string_view set) { return set.find(c) != std::string_view::npos; }

std::string Lower(std::string text) {
  for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return text;
}

std::string WithoutBlanks(std::string text) {
  while (!text.empty() && IsOneOf(text.back(), kBlanks)) text.pop_back();
  while (!text.empty() && IsOneOf(text.front(), kBlanks)) text.erase(0, 1);
  return text;
}

// Nothing for a text that cannot be read.
std::optional<Pairs> ReadPlainly(const std::string& text) {
  Pairs pairs;
  std::size_t at = 0;
  const auto here = [&] { return at < text.size() ? text[at] : '\0'; };
  for (;;) {
    while (at < text.size() && IsOneOf(here(), " \t\r\n;")) ++at;
    if (at == text.size()) return pairs;
    std::string keyword, value;
    while (at < text.size() && !IsOneOf(here(), "=;")) keyword += text[at++];
    keyword = WithoutBlanks(keyword);
    if (at == text.size() || here() == ';' || keyword.empty()) return std::nullopt;
    ++at;
    while (at < text.size() && IsOneOf(here(), kBlanks)) ++at;
    if (at < text.size() && IsOneOf(here(), "\"'{")) {
      const char closing = here() == '{' ? '}' : here();
      for (++at;; ++at) {
        if (at == text.size()) return std::nullopt;
        if (here() == closing && (at + 1 == text.size() || text[at + 1] != closing)) break;
        if (here() == closing) ++at;
        value += here();
      }
      ++at;
      while (at < text.size() && IsOneOf(here(), kBlanks)) ++at;
      if (at < text.size() && here() != ';') return std::nullopt;
    } else {
      while (at < text.size() && here() != ';') value += text[at++];
      value = WithoutBlanks(value);
    }
    pairs.emplace_back(keyword, value);
  }
}

std::string ValueOf(const Pairs& pairs, const std::string& keyword) {
  std::string last;
  for (const auto& [name, value] : pairs) {
    if (Lower(name) == Lower(keyword)) last = value;
  }
  return last;
}

void ReadsWhatAPlainReaderReads(const std::string& text) {
  const std::optional<Pairs> expected = ReadPlainly(text);
  std::optional<ConnectionText> read;
  const std::optional<Error> error = Raised([&] { read.emplace(text); });
  Require(!error == expected.has_value(), "a text that " + std::string(expected ? "can" : "cannot") + " be read");
  if (error) {
    Require(error->Number() == errors::kInvalidCall, "an unreadable text raises 5");
    return;
  }
  Require(read->Pairs() == *expected, "the pairs of " + Shown(text));
  for (const auto& [keyword, value] : *expected) {
    RequireSame(*read->Get(" " + keyword), ValueOf(*expected, keyword), "the value of " + Shown(keyword));
  }
  const auto masked = ReadPlainly(read->Masked());
  for (const char* shown : {"server", "database", "uid", "data source"}) {
    if (masked) RequireSame(ValueOf(*masked, shown), ValueOf(*expected, shown), std::string("the shown ") + shown);
  }
}

void TakesAnotherKeyword(const std::string& text, const std::string& value) {
  if (!ReadPlainly(text)) return;
  const ConnectionText with = ConnectionText(text).With("PWD", value);
  RequireSame(*with.Get("pwd"), value, "the keyword that was added to " + Shown(text));
  if (text.find_first_of("\"'") != std::string::npos) return;  // ODBC knows braces only
  RequireSame(OdbcKeyword(WithOdbcKeyword(text, "DATABASE", "it's {1}"), "database"), "it's {1}",
              "the ODBC keyword that was added to " + Shown(text));
}

// The pattern with secret bytes in place of letters, digits and what is not ASCII.
std::string Secret(const std::string& pattern) {
  std::string secret;
  for (const char c : pattern) {
    const bool isPunctuation = IsOneOf(c, " \t\r\n;\"'{}=,.[]()?*!@#$%&/\\");
    secret += isPunctuation ? c : static_cast<char>(0x80 | static_cast<unsigned char>(c));
  }
  return secret;
}

std::string WithoutSecretBytes(std::string text) {
  for (char& c : text) c = static_cast<char>(c & 0x7F);
  return text;
}

std::string Enclosed(const std::string& value, char opening) {
  if (opening == '\0') return value;
  const char closing = opening == '{' ? '}' : opening;
  std::string text(1, opening);
  for (const char c : value) text.append(c == closing ? 2 : 1, c);
  return text + closing;
}

void ShowsNoByteOfAPassword(const std::string& before, const std::string& pattern, const std::string& after) {
  if (!ReadPlainly(before)) return;
  const std::string secret = Secret(pattern);
  for (const char* keyword : {"PWD", "Password", " my password ", "token"}) {
    for (const char opening : {'\0', '"', '\'', '{'}) {
      // Without quotes a leading one would open a value, and the rest of a password is told from a keyword after PWD
      // only.
      const bool isPlain = opening == '\0';
      if (isPlain && (keyword == std::string_view("token") || IsOneOf(WithoutBlanks(secret + "x")[0], "\"'{")))
        continue;
      const std::string text = before + ";" + keyword + "=" + Enclosed(secret, opening) + ";" + after;
      std::string shown;
      const std::optional<Error> error = Raised([&] { shown = ConnectionText(text).Masked(); });
      if (error) shown = DescribeChain(*error);
      for (const char c : shown) {
        if (static_cast<unsigned char>(c) >= 0x80)
          Fail("a password's byte shows: " + Shown(shown) + " of " + Shown(text));
      }
    }
  }
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx::fuzz;
  Input input(data, size);
  const std::string text = input.Line();
  const std::string pattern = input.Line();
  const std::string after = input.Rest();
  ReadsWhatAPlainReaderReads(text);
  TakesAnotherKeyword(text, pattern);
  ShowsNoByteOfAPassword(WithoutSecretBytes(text), pattern, WithoutSecretBytes(after));
  return 0;
}
