#include "tools/qmxadmin/check/finding_sink.h"

#include <fmt/format.h>

#include "platform/error.h"

namespace qmx {

void FindingSink::Good(const std::string& what, const std::string& detail) {
  Add({Finding::State::Good, what, detail, ""});
}

void FindingSink::Wrong(const std::string& what, const std::string& detail, const std::string& whatToDo) {
  Add({Finding::State::Wrong, what, detail, whatToDo});
}

void FindingSink::Wrong(const std::string& what, const Error& error, const std::string& whatToDo) {
  Wrong(what, fmt::format("error {}, {}: {}", error.Number(), error.Source(), error.Description()), whatToDo);
}

void FindingSink::NotChecked(const std::string& what, const std::string& why) {
  Add({Finding::State::NotChecked, what, why, ""});
}

}  // namespace qmx
