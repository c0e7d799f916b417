#include "platform/connection_text.h"

#include <algorithm>
#include <array>

#include "platform/error.h"
#include "platform/names.h"
#include "platform/trim.h"

namespace qmx {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

bool IsSecret(std::string_view keyword) {
  const std::string folded = FoldName(keyword);
  return folded == "pwd" || folded.ends_with("password");
}

// The keywords whose values may be shown.
constexpr auto kShown =
    std::to_array<std::string_view>({"provider",   "data source", "mode",          "driver",
                                     "dsn",        "filedsn",     "server",        "servername",
                                     "host",       "port",        "socket",        "database",
                                     "catalog",    "uid",         "user",          "username",
                                     "user id",    "protocol",    "sslmode",       "sslca",
                                     "sslcert",    "charset",     "timeout",       "connect_timeout",
                                     "options",    "option",      "keepalivetime", "keepaliveinterval",
                                     "syncpragma", "nowchar",     "longnames"});

bool MayBeShown(std::string_view keyword) {
  return std::find(kShown.begin(), kShown.end(), FoldName(keyword)) != kShown.end();
}

[[noreturn]] void RaiseUnreadable(const std::string& why, std::size_t position) {
  throw Error(errors::kInvalidCall, "Connection text",
              "The connection text cannot be read: " + why + " at character " + std::to_string(position + 1) +
                  ". It must be keyword=value, further ones after \";\".");
}

// Reads a text from its beginning to its end, one keyword and its value at a time.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  bool NextPiece() {
    position_ = text_.find_first_not_of(" \t\r\n;", position_);
    return position_ < text_.size();
  }

  std::string Keyword() {
    const std::size_t start = position_;
    const std::size_t end = text_.find_first_of("=;", start);
    const std::string keyword(Trimmed(text_.substr(start, end - start), kBlanks));
    // Text without "=" may be the rest of a password that holds a ";", so the error does not repeat it.
    if (end == std::string_view::npos || text_[end] == ';') RaiseUnreadable("\"=\" is missing after the piece", start);
    if (keyword.empty()) RaiseUnreadable("a keyword is missing before \"=\"", start);
    position_ = std::min(text_.find_first_not_of(kBlanks, end + 1), text_.size());
    return keyword;
  }

  std::string Value(const std::string& keyword) {
    const char opening = position_ < text_.size() ? text_[position_] : ';';
    if (opening == '"' || opening == '\'') return Enclosed(keyword, opening);
    if (opening == '{') return Enclosed(keyword, '}');
    const std::size_t start = position_;
    position_ = std::min(text_.find(';', start), text_.size());
    return std::string(Trimmed(text_.substr(start, position_ - start), kBlanks));
  }

  std::size_t Position() const { return position_; }

  // After a password without quotes, an unknown keyword may be the rest of that password.
  void PassSecret() { isBehindSecret_ = true; }
  bool IsRestOfSecret(std::string_view keyword) const {
    return isBehindSecret_ && !MayBeShown(keyword) && !IsSecret(keyword);
  }

 private:
  std::string Enclosed(const std::string& keyword, char closing) {
    const std::size_t start = position_++;
    std::string value;
    for (;; ++position_) {
      if (position_ >= text_.size()) {
        RaiseUnreadable("the value of " + Named(keyword) + " has no closing " + closing + ", opened", start);
      }
      if (text_[position_] == closing) {
        const bool doubled = position_ + 1 < text_.size() && text_[position_ + 1] == closing;
        if (!doubled) break;
        ++position_;
      }
      value += text_[position_];
    }
    const std::size_t rest = text_.find_first_not_of(kBlanks, ++position_);
    if (rest != std::string_view::npos && text_[rest] != ';') {
      RaiseUnreadable("the value of " + Named(keyword) + " continues after its closing " + closing, rest);
    }
    return value;
  }

  std::string Named(const std::string& keyword) const {
    return IsRestOfSecret(keyword) ? "a keyword" : "\"" + keyword + "\"";
  }

  std::string_view text_;
  std::size_t position_ = 0;
  bool isBehindSecret_ = false;
};

}  // namespace

ConnectionText::ConnectionText(std::string text) : text_(std::move(text)) {
  const auto isEnclosed = [&](std::size_t start) {
    return start < text_.size() && std::string_view("\"'{").find(text_[start]) != std::string_view::npos;
  };
  Reader reader(text_);
  std::size_t shown = 0;  // the text is masked up to here
  while (reader.NextPiece()) {
    const std::size_t start = reader.Position();
    std::string keyword = reader.Keyword();
    const std::size_t valueStart = reader.Position();
    std::string value = reader.Value(keyword);
    if (!MayBeShown(keyword)) {
      const std::size_t hidden = reader.IsRestOfSecret(keyword) ? start : valueStart;
      masked_.append(text_, shown, hidden - shown).append("***");
      shown = reader.Position();
      secrets_.push_back(value);
      if (hidden == start) secrets_.push_back(keyword);
    }
    if (IsSecret(keyword) && !isEnclosed(valueStart)) reader.PassSecret();
    pairs_.emplace_back(std::move(keyword), std::move(value));
  }
  masked_.append(text_, shown);
}

std::optional<std::string> ConnectionText::Get(std::string_view keyword) const {
  const auto last = std::find_if(pairs_.rbegin(), pairs_.rend(),
                                 [&](const auto& pair) { return SameName(pair.first, Trimmed(keyword, kBlanks)); });
  if (last == pairs_.rend()) return std::nullopt;
  return last->second;
}

ConnectionText ConnectionText::With(std::string_view keyword, std::string_view value) const {
  std::string text = text_;
  if (!text.empty() && !text.ends_with(';')) text += ';';
  text.append(keyword) += '=';
  const bool plain = !value.empty() && value.find_first_of(" \t\r\n;\"'{}=") == std::string_view::npos;
  if (plain) return ConnectionText(text.append(value));
  text += '{';
  for (const char c : value) text.append(c == '}' ? 2 : 1, c);
  return ConnectionText(text + '}');
}

}  // namespace qmx
