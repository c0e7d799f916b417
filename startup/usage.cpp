#include "startup/usage.h"

namespace qmx {

std::string Usage() {
  return "Usage: qmxdatacopy 'CONNECTION,DATABASE,TABLE,LOGDIR,COMPONENT1,COMPONENT2[,REQUEST]'\n"
         "       qmxdatacopy --help | --version\n";
}

std::string Help() {
  return Usage() + R"(
Copies one table of the ERP into the local database, and exits. The arguments are joined by one blank and
split at every comma; blanks around a piece do not count. One file takes LOGDIR as it stands, with such
blanks: QMXDBSynclog.txt, the log of a start-up failure. So write none around LOGDIR.

  CONNECTION  connection text of the local database: "Provider=SQLite;Data Source=FILE-OR-FOLDER",
              or an ODBC text with Driver=, DSN= or FILEDSN=
  DATABASE    the database to make default on that connection; blank keeps the connection's own
  TABLE       table code, for example tsmdm030; for calendars also tcccp030=KEY=E (one employee's)
              or tcccp030=KEY=C (one calendar)
  LOGDIR      folder of the logs: TABLE.log, QMXRuns.jsonl, QMXDBSynclog.txt and, without a system log,
              evtlog.txt; where it is blank, QMXDBSynclog.txt goes to the drive C: and the others to the root folder
  COMPONENT1  the two pieces of the ERP's business component; it is handed to the ERP as
  COMPONENT2  "COMPONENT1, COMPONENT2"
  REQUEST     status request number of the scheduling server. A number: messages and table status
              are sent; another text: messages alone; empty or absent: nothing is sent

Exit status: 0 the copy is complete, 1 it failed, 2 the program could not start, or something around the
copy failed, such as the table's release, 3 the table is already being copied, 4 there is no such table or
calendar kind. The causes of a failure stand on standard error, the outermost first.

Environment:
  QMX_SYSTEM_DRIVE  folder that the path prefix "C:" stands for (default: the home folder)
  QMX_COMPONENTS    folders with the manifests of component servers, separated by ":"
  QMX_COPY          "whole" to make the copy visible in one commit, or not at all; empty saves rows as it goes
  QMX_METHOD        "full" for one copy in full, whatever the sync method in tstables, which stays as it is
  QMX_TRACE         file to which every call to components and database is appended, as JSON lines
  QMX_PROGRESS_FD   number of an open descriptor to which lines "rows N" or "deleting" are written while the copy runs,
                    and "end STATUS" at its end
  QMX_SILENCE_LIMIT seconds after which a database server that does not answer is given up

Where standard error is a terminal, a line on it shows how far the copy has come; nothing of it stays.

Example:
  qmxdatacopy 'Provider=SQLite;Data Source=/var/lib/qmx,main,tsmdm030,/var/log/qmx,OrvanSandbox,/srv/orvan.db,17'
)";
}

std::string Version() { return "qmxdatacopy " QMX_VERSION "\n"; }

std::string VersionNumber() { return QMX_VERSION; }

}  // namespace qmx
