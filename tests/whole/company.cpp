#include "tests/whole/company.h"

#include <sqlite3.h>

#include <memory>
#include <stdexcept>

#include "tests/support/process.h"

namespace qmx::test {
namespace {

const std::map<std::string, int> kSmall = {
    {"service-types", 6}, {"centers", 3},         {"areas", 5},           {"skills", 6},
    {"employees", 12},    {"addresses", 20},      {"orders", 40},         {"activities", 2},
    {"calendars", 4},     {"calendar-days", 130}, {"configurations", 15},
};

void Sandbox(const std::vector<std::string>& arguments) {
  const Process tool = Run(ORVAN_SANDBOX, arguments);
  if (tool.status != 0) throw std::runtime_error("orvan-sandbox " + arguments.front() + ": " + tool.err);
}

using Handle = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

Handle Open(const std::string& file) {
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
  Handle handle(opened, sqlite3_close);
  if (code != SQLITE_OK) throw std::runtime_error("cannot open " + file);
  return handle;
}

void Execute(sqlite3* handle, const std::string& statements) {
  if (sqlite3_exec(handle, statements.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK) return;
  throw std::runtime_error(std::string(sqlite3_errmsg(handle)) + " in " + statements);
}

}  // namespace

Company::Company(std::map<std::string, int> sizes) {
  sizes.insert(kSmall.begin(), kSmall.end());  // those that are not there
  std::vector<std::string> arguments = {"make", File(), "--seed", "1", "--today", "2026-11-20"};
  for (const auto& [name, size] : sizes) arguments.insert(arguments.end(), {"--" + name, std::to_string(size)});
  Sandbox(arguments);
}

void Company::Work(std::uint64_t seed, DateTime from) {
  Sandbox(
      {"work", File(), "--seed", std::to_string(seed), "--today", from.DatePart().ToText(), "--from", from.ToText()});
}

void Company::Change(DateTime at, const std::string& statements) {
  const Handle handle = Open(File());
  const std::string midnight = at == at.DatePart() ? " 00:00:00" : "";  // which ToText leaves out
  Execute(handle.get(), "begin; insert into sandbox_clock values ('" + at.ToText() + midnight + "'); " + statements +
                            "; delete from sandbox_clock; commit");
}

std::string Company::Value(const std::string& query) const {
  const Handle handle = Open(File());
  std::string value;
  const auto keep = [](void* kept, int columns, char** values, char**) {
    if (columns > 0 && values[0]) *static_cast<std::string*>(kept) = values[0];
    return 0;
  };
  if (sqlite3_exec(handle.get(), query.c_str(), keep, &value, nullptr) == SQLITE_OK) return value;
  throw std::runtime_error(std::string(sqlite3_errmsg(handle.get())) + " in " + query);
}

}  // namespace qmx::test
