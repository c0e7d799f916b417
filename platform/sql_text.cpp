#include "platform/sql_text.h"

#include <algorithm>
#include <charconv>

#include "platform/error.h"
#include "platform/trim.h"

namespace qmx {
namespace {

using Kind = Variant::Kind;
using ValueKind = SqlShape::ValueKind;

constexpr std::size_t kUsualValues = 4;

std::string WhyItBreaks(const std::string& value, bool quoted) {
  if (value.find('\0') != std::string::npos) return "The value holds a NUL character";
  if (quoted && value.find('\'') != std::string::npos) return "The value " + value + " holds a quote";
  if (!quoted && !ParseNumber(value)) return "The value '" + value + "' is not a number and has no quotes around it";
  return {};
}

// Nothing if the integer is written in another way, such as "007".
std::optional<std::int32_t> IntegerWrittenAs(const std::string& text) {
  std::int32_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return std::to_string(value) == text ? std::optional(value) : std::nullopt;
}

// Whether a literal between these positions is complete, and not a part of another token.
bool StandsAlone(std::string_view text, std::size_t begin, std::size_t end) {
  constexpr std::string_view kBefore = " \t\r\n(,=<>";
  constexpr std::string_view kBehind = " \t\r\n),";
  return (begin == 0 || kBefore.find(text[begin - 1]) != std::string_view::npos) &&
         (end == text.size() || kBehind.find(text[end]) != std::string_view::npos);
}

bool IsEnclosed(std::string_view text, std::size_t at) {
  return at > 0 && at < text.size() && text[at - 1] == '\'' && text[at] == '\'';
}

}  // namespace

std::optional<DateTime> MomentOf(const Variant& value) {
  if (value.GetKind() == Kind::DateTime) return value.ToDateTime();
  return value.IfText() ? DateTime::Parse(Trimmed(*value.IfText())) : std::nullopt;
}

bool SqlShape::IsEqualMoment(const Place& place) const {
  if (place.kind != ValueKind::Moment || !IsEnclosed(fixed, place.at) || place.at < 3) return false;
  const std::size_t before = place.at - 2;
  return fixed[before] == '=' && fixed[before - 1] != '<' && fixed[before - 1] != '>' && fixed[before - 1] != '!';
}

std::optional<std::string> SqlShape::SharedForm(std::string_view integerParameter,
                                                std::string_view equalsMoment) const {
  if (places.empty()) return std::nullopt;
  std::string form;
  std::size_t copied = 0;
  for (const Place& place : places) {
    const bool isInteger = place.kind == ValueKind::Integer;
    if (!isInteger && !IsEnclosed(fixed, place.at)) return std::nullopt;
    const std::size_t quote = isInteger ? 0 : 1;
    const std::size_t begin = place.at - quote;
    const std::size_t end = place.at + quote;
    const bool isFirst = &place == &places.front();
    if ((!isFirst && begin <= copied) || !StandsAlone(fixed, begin, end)) return std::nullopt;
    form.append(fixed, copied, begin - copied);
    if (IsEqualMoment(place)) {
      form.pop_back();  // the equals sign
      form.append(equalsMoment);
    } else {
      form.append(isInteger ? integerParameter : "?");
    }
    copied = end;
  }
  return form.append(fixed, copied);
}

SqlText& SqlText::Restart(std::string_view fixed) {
  shape_.fixed.clear();
  shape_.places.clear();
  values_.clear();
  broken_.clear();
  isQuoteOpen_ = false;
  return Append(fixed);
}

SqlText& SqlText::Append(std::string_view fixed) {
  shape_.fixed += fixed;
  if (std::count(fixed.begin(), fixed.end(), '\'') % 2 != 0) isQuoteOpen_ = !isQuoteOpen_;
  return *this;
}

SqlText& SqlText::Value(const Variant& value) {
  if (isQuoteOpen_ && value.GetKind() == Kind::DateTime) return Put(value, ValueKind::Moment);
  if (!isQuoteOpen_ && value.GetKind() == Kind::Int32) return Put(value, ValueKind::Integer);
  std::string text = value.ToText();
  if (broken_.empty()) broken_ = WhyItBreaks(text, isQuoteOpen_);
  if (isQuoteOpen_) return Put(std::move(text), ValueKind::Text);
  if (const std::optional<std::int32_t> integer = IntegerWrittenAs(text)) return Put(*integer, ValueKind::Integer);
  return Append(text);
}

SqlText& SqlText::Moment(const Variant& value) {
  Value(value);
  if (isQuoteOpen_) shape_.places.back().kind = ValueKind::Moment;
  return *this;
}

SqlText& SqlText::Put(Variant value, ValueKind kind) {
  if (values_.empty()) values_.reserve(kUsualValues), shape_.places.reserve(kUsualValues);
  shape_.places.push_back({shape_.fixed.size(), kind});
  values_.push_back(std::move(value));
  return *this;
}

std::string SqlText::Text() const { return Text({}); }

std::string SqlText::Text(const MomentText& moment) const {
  std::string text;
  std::size_t copied = 0;
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const SqlShape::Place& place = shape_.places[i];
    text.append(shape_.fixed, copied, place.at - copied);
    const auto known = place.kind == ValueKind::Moment && moment ? MomentOf(values_[i]) : std::nullopt;
    text += known ? moment(*known) : values_[i].ToText();
    copied = place.at;
  }
  return text.append(shape_.fixed, copied);
}

void SqlText::Check() const {
  if (broken_.empty()) return;
  throw Error(errors::kCommand, "SQL text", broken_ + ": it would change what the statement means.")
      .With("statement", Text());
}

}  // namespace qmx
