#include "platform/sqlite/driver.h"

#include <sqlite3.h>

#include "platform/error.h"
#include "platform/names.h"
#include "platform/sqlite/session.h"

namespace qmx {
namespace {

void RequireKnownKeywords(const ConnectionText& text) {
  for (const auto& [keyword, value] : text.Pairs()) {
    const bool known = SameName(keyword, "Provider") || SameName(keyword, "Data Source") || SameName(keyword, "Mode");
    if (known) continue;
    throw Error(errors::kInvalidCall, "SQLite",
                "The connection text holds the keyword \"" + keyword +
                    "\", which is unknown; for SQLite there are Provider, Data Source and Mode.")
        .With("connection text", text.Masked());
  }
}

SqliteMode ModeOf(const ConnectionText& text) {
  const std::string mode = text.Get("Mode").value_or("");
  if (mode.empty()) return SqliteMode::Write;
  if (SameName(mode, "Create")) return SqliteMode::Create;
  if (SameName(mode, "Read")) return SqliteMode::Read;
  throw Error(errors::kInvalidCall, "SQLite",
              "The connection text holds Mode=" + mode +
                  "; the modes are Create, which makes a missing file, and Read, which needs no right to write.")
      .With("connection text", text.Masked());
}

}  // namespace

// By default SQLite counts its memory under a lock that all threads share. Nothing here reads that count. The setting
// has no effect if SQLite is in use already.
SqliteDriver::SqliteDriver() { sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0); }

std::string SqliteDriver::Form() const { return "\"Provider=SQLite;Data Source=FILE\""; }

bool SqliteDriver::Serves(const ConnectionText& text) const {
  return SameName(text.Get("Provider").value_or(""), "SQLite");
}

std::unique_ptr<DriverSession> SqliteDriver::Open(const ConnectionText& text) {
  RequireKnownKeywords(text);
  const std::string source = text.Get("Data Source").value_or("");
  if (source.empty()) {
    throw Error(errors::kInvalidCall, "SQLite",
                "The connection text has no Data Source, which names the database file or a folder of such files.")
        .With("connection text", text.Masked());
  }
  return std::make_unique<SqliteDriverSession>(source, ModeOf(text));
}

}  // namespace qmx
