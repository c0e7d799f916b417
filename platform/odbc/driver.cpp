#include "platform/odbc/driver.h"

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/error.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/driver_manager.h"
#include "platform/odbc/session.h"

namespace qmx {
namespace {

constexpr const char* kFile = "FILEDSN";

// The driver manager joins the file's lines with ";", so a value without braces would end at its first ";".
void RequireBracedValues(const std::string& file) {
  std::ifstream lines{std::filesystem::path(file)};
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    const std::size_t equals = line.find('=');
    const std::size_t first = line.find_first_not_of(" \t");
    if (equals == std::string::npos || line[first] == ';' || line[first] == '#') continue;
    const std::size_t value = line.find_first_not_of(" \t", equals + 1);
    if (value == std::string::npos || line[value] == '{' || line.find(';', value) == std::string::npos) continue;
    throw Error(errors::kInvalidCall, "ODBC",
                "The data source file " + file + ", line " + std::to_string(number) +
                    ": the value holds a \";\". Put it in braces, with \"}\" doubled inside.")
        .With("file", file);
  }
}

// Keywords of the text override those of the file.
std::string WithFileRead(const ConnectionText& text) {
  const std::optional<std::string> file = text.Get(kFile);
  if (!file) return text.Text();
  const std::string pairs = ReadDataSourceFile(*file);
  if (pairs.empty()) {
    throw Error(errors::kProviderUnspecified, "ODBC",
                "The data source file " + *file + " cannot be read or has no section [ODBC].")
        .With("file", *file);
  }
  RequireBracedValues(*file);
  std::string whole = WithoutOdbcKeyword(text.Text(), kFile);
  const ConnectionText inFile(pairs);
  for (const auto& [keyword, value] : inFile.Pairs()) {
    if (!text.Get(keyword)) whole = WithOdbcKeyword(whole, keyword, value);
  }
  return whole;
}

}  // namespace

std::string OdbcDriver::Form() const { return "\"Driver=NAME;...\", \"DSN=NAME\" or \"FILEDSN=FILE\""; }

bool OdbcDriver::Serves(const ConnectionText& text) const {
  return !text.Get("Provider") && (text.Get("Driver") || text.Get("DSN") || text.Get("FILEDSN"));
}

std::unique_ptr<DriverSession> OdbcDriver::Open(const ConnectionText& text) {
  try {
    return std::make_unique<OdbcDriverSession>(WithFileRead(text), watchdog_);
  } catch (Error& error) {
    error.With("connection text", text.Masked());
    throw;
  }
}

}  // namespace qmx
