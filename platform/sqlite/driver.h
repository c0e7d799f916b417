// The embedded database: "Provider=SQLite;Data Source=FILE", and no further keyword but "Mode=Create".
//
// Data Source is a database file, whose catalog is the file's name without its extension and cannot be changed, or a
// folder, in which the default database NAME is the file NAME.db. Files must exist; Mode=Create makes the missing file,
// never a folder. What cannot be opened is -2147467259 with the file and the reason; an unknown keyword is 5.
//
// Files are kept in WAL mode with synchronous=NORMAL: several programs can write different tables of one file by turns
// while others read. What was saved survives a killed process; a power cut may lose the last saved rows but leaves the
// file whole. The journal may grow to 64 MiB before its pages go to the file: each time costs two waits for the disk,
// and changed rows lie on the same pages again and again. A lock held by somebody else is waited for as long as a
// statement may take, no longer.
#pragma once

#include "platform/database_driver.h"

namespace qmx {

class SqliteDriver : public Driver {
 public:
  SqliteDriver();
  std::string Form() const override;
  bool Serves(const ConnectionText& text) const override;
  std::unique_ptr<DriverSession> Open(const ConnectionText& text) override;
};

}  // namespace qmx
