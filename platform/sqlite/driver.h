// The embedded database: "Provider=SQLite;Data Source=FILE", and no other keyword but Mode.
//
// Data Source is a database file, whose catalog is the file's name without its extension and cannot be changed, or a
// folder, in which the default database NAME is the file NAME.db. Files must exist; Mode=Create creates a missing file,
// never a folder. Mode=Read opens a file that the program may not write, and leaves its journal mode as it is. SQLite
// may need to write even to read: then opening raises 70 with the reason (read_only.h). A failure to open is
// -2147467259 with the file and the reason. An unknown keyword is 5.
//
// Files are in WAL mode with synchronous=NORMAL: several programs take turns at writing different tables of one file
// while others read. Saved rows survive a killed process. A power cut may lose the last saved rows but leaves the file
// consistent. The journal may grow to 64 MiB before its pages are written to the file, because each time costs two
// waits for the disk and changed rows are often on the same pages. The wait for another program's lock ends with the
// statement's time-out.
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
