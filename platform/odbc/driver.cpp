#include "platform/odbc/driver.h"

#include <string>

#include "platform/error.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/data_source_file.h"
#include "platform/odbc/session.h"

namespace qmx {
namespace {

constexpr const char* kFile = "FILEDSN";

// Keywords of the text override those of the file.
std::string WithFileRead(const ConnectionText& text) {
  const std::optional<std::string> file = text.Get(kFile);
  if (!file) return text.Text();
  std::string whole = WithoutOdbcKeyword(text.Text(), kFile);
  const ConnectionText inFile(ReadDataSourceFile(*file));
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
