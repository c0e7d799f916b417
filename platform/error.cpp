#include "platform/error.h"

#include <algorithm>
#include <limits>
#include <new>

namespace qmx {
namespace {

// Replaces line ends and other control characters by blanks, and removes blanks at the end.
std::string OneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    const bool control = static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
    if (!control) {
      line += c;
    } else if (!line.ends_with(' ')) {
      line += ' ';
    }
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

std::string DescribeLink(const Error& error) {
  std::string line =
      "error " + std::to_string(error.Number()) + ", " + OneLine(error.Source()) + ": " + OneLine(error.Description());
  const char* separator = " [";
  for (const auto& [what, value] : error.Details()) {
    line += separator + OneLine(what) + ": " + OneLine(value);
    separator = "; ";
  }
  if (!error.Details().empty()) line += ']';
  return line;
}

}  // namespace

Error::Error(NoCause, std::int32_t number, std::string source, std::string description)
    : number_(number), source_(std::move(source)), description_(std::move(description)) {}

Error::Error(std::int32_t number, std::string source, std::string description)
    : Error(NoCause{}, number, std::move(source), std::move(description)) {
  if (std::current_exception()) cause_ = std::make_shared<const Error>(CurrentError());
}

Error& Error::With(const std::string& what, std::string value) {
  const auto sameName = [&](const Detail& detail) { return detail.first == what; };
  if (std::none_of(details_.begin(), details_.end(), sameName)) details_.emplace_back(what, std::move(value));
  return *this;
}

const std::string& Error::DetailOf(std::string_view what) const {
  static const std::string kNone;
  const auto sameName = [&](const Detail& detail) { return detail.first == what; };
  const auto found = std::find_if(details_.begin(), details_.end(), sameName);
  return found == details_.end() ? kNone : found->second;
}

Error& Error::AddCauses(const Error& error) {
  for (const Error* link = &error; link; link = link->Cause()) AddCause(*link);
  return *this;
}

void Error::AddCause(const Error& error) {
  const bool isThis = number_ == error.number_ && source_ == error.source_ && description_ == error.description_;
  if (isThis) return;
  Error next = cause_ ? *cause_ : error;
  if (cause_) {
    next.AddCause(error);
  } else {
    next.cause_ = nullptr;
  }
  cause_ = std::make_shared<const Error>(std::move(next));
}

Error CurrentError() {
  try {
    if (std::current_exception()) throw;
    return {Error::NoCause{}, errors::kInternal, "Error", "No error is being handled."};
  } catch (const Error& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return {Error::NoCause{}, errors::kOutOfMemory, "Memory", "Out of memory."};
  } catch (const std::exception& other) {
    return {Error::NoCause{}, errors::kInternal, "Internal error", other.what()};
  } catch (...) {
    return {Error::NoCause{}, errors::kInternal, "Internal error", "An exception of an unknown type was raised."};
  }
}

std::int32_t NumberPlus100(std::int32_t number) {
  if (number > std::numeric_limits<std::int32_t>::max() - 100) {
    throw Error(errors::kOverflow, "Error",
                "Overflow: 100 added to error number " + std::to_string(number) + " leaves 32 bits.");
  }
  return number + 100;
}

std::string DescribeChain(const Error& error) {
  std::string text = DescribeLink(error);
  for (const Error* cause = error.Cause(); cause; cause = cause->Cause())
    text += "\n  because of " + DescribeLink(*cause);
  return text;
}

}  // namespace qmx
