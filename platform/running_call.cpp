#include "platform/running_call.h"

#include <set>
#include <string>

namespace qmx {

const char* RunningCall::KeepText(std::string_view text) {
  static auto& texts = *new std::set<std::string, std::less<>>;  // never destroyed: read until the very end
  const auto known = texts.find(text);
  return (known != texts.end() ? known : texts.emplace(text).first)->c_str();
}

}  // namespace qmx
