#include "platform/sqlite/errors.h"

#include <sqlite3.h>

#include <cstdint>
#include <map>

namespace qmx {
namespace {

std::int32_t Number(int extendedCode, const std::string& message) {
  switch (extendedCode & 0xff) {
    case SQLITE_ERROR:
      return message.starts_with("no such table") ? errors::kNoSuchTable : errors::kCommand;
    case SQLITE_CONSTRAINT:
      return errors::kIntegrity;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_INTERRUPT:
      return errors::kTimeout;
    case SQLITE_NOMEM:
      return errors::kOutOfMemory;
    case SQLITE_IOERR:
      return errors::kDeviceIo;
    case SQLITE_FULL:
      return errors::kDiskFull;
    case SQLITE_PERM:
    case SQLITE_READONLY:
      return errors::kPermissionDenied;
    case SQLITE_MISMATCH:
      return errors::kTypeMismatch;
    case SQLITE_TOOBIG:
      return errors::kOverflow;
    default:
      return errors::kProviderUnspecified;
  }
}

std::string Name(int extendedCode) {
  // Never destroyed: a helper thread may fail while the process ends.
  static const auto& kNames = *new std::map<int, std::string>{
      {SQLITE_ERROR, "SQLITE_ERROR"},
      {SQLITE_INTERNAL, "SQLITE_INTERNAL"},
      {SQLITE_PERM, "SQLITE_PERM"},
      {SQLITE_ABORT, "SQLITE_ABORT"},
      {SQLITE_BUSY, "SQLITE_BUSY"},
      {SQLITE_BUSY_RECOVERY, "SQLITE_BUSY_RECOVERY"},
      {SQLITE_BUSY_SNAPSHOT, "SQLITE_BUSY_SNAPSHOT"},
      {SQLITE_LOCKED, "SQLITE_LOCKED"},
      {SQLITE_NOMEM, "SQLITE_NOMEM"},
      {SQLITE_READONLY, "SQLITE_READONLY"},
      {SQLITE_READONLY_CANTINIT, "SQLITE_READONLY_CANTINIT"},
      {SQLITE_READONLY_DBMOVED, "SQLITE_READONLY_DBMOVED"},
      {SQLITE_READONLY_DIRECTORY, "SQLITE_READONLY_DIRECTORY"},
      {SQLITE_READONLY_ROLLBACK, "SQLITE_READONLY_ROLLBACK"},
      {SQLITE_INTERRUPT, "SQLITE_INTERRUPT"},
      {SQLITE_IOERR, "SQLITE_IOERR"},
      {SQLITE_IOERR_READ, "SQLITE_IOERR_READ"},
      {SQLITE_IOERR_SHORT_READ, "SQLITE_IOERR_SHORT_READ"},
      {SQLITE_IOERR_WRITE, "SQLITE_IOERR_WRITE"},
      {SQLITE_IOERR_FSYNC, "SQLITE_IOERR_FSYNC"},
      {SQLITE_IOERR_TRUNCATE, "SQLITE_IOERR_TRUNCATE"},
      {SQLITE_IOERR_LOCK, "SQLITE_IOERR_LOCK"},
      {SQLITE_IOERR_SHMOPEN, "SQLITE_IOERR_SHMOPEN"},
      {SQLITE_IOERR_SHMSIZE, "SQLITE_IOERR_SHMSIZE"},
      {SQLITE_IOERR_SHMMAP, "SQLITE_IOERR_SHMMAP"},
      {SQLITE_CORRUPT, "SQLITE_CORRUPT"},
      {SQLITE_FULL, "SQLITE_FULL"},
      {SQLITE_CANTOPEN, "SQLITE_CANTOPEN"},
      {SQLITE_PROTOCOL, "SQLITE_PROTOCOL"},
      {SQLITE_SCHEMA, "SQLITE_SCHEMA"},
      {SQLITE_TOOBIG, "SQLITE_TOOBIG"},
      {SQLITE_CONSTRAINT, "SQLITE_CONSTRAINT"},
      {SQLITE_CONSTRAINT_CHECK, "SQLITE_CONSTRAINT_CHECK"},
      {SQLITE_CONSTRAINT_FOREIGNKEY, "SQLITE_CONSTRAINT_FOREIGNKEY"},
      {SQLITE_CONSTRAINT_NOTNULL, "SQLITE_CONSTRAINT_NOTNULL"},
      {SQLITE_CONSTRAINT_PRIMARYKEY, "SQLITE_CONSTRAINT_PRIMARYKEY"},
      {SQLITE_CONSTRAINT_TRIGGER, "SQLITE_CONSTRAINT_TRIGGER"},
      {SQLITE_CONSTRAINT_UNIQUE, "SQLITE_CONSTRAINT_UNIQUE"},
      {SQLITE_CONSTRAINT_DATATYPE, "SQLITE_CONSTRAINT_DATATYPE"},
      {SQLITE_MISMATCH, "SQLITE_MISMATCH"},
      {SQLITE_MISUSE, "SQLITE_MISUSE"},
      {SQLITE_AUTH, "SQLITE_AUTH"},
      {SQLITE_RANGE, "SQLITE_RANGE"},
      {SQLITE_NOTADB, "SQLITE_NOTADB"},
  };
  for (const int code : {extendedCode, extendedCode & 0xff}) {
    const auto found = kNames.find(code);
    if (found != kNames.end()) return found->second;
  }
  return "SQLite code " + std::to_string(extendedCode);
}

}  // namespace

Error SqliteError(sqlite3* handle) { return SqliteError(sqlite3_extended_errcode(handle), sqlite3_errmsg(handle)); }

Error SqliteError(int extendedCode, const std::string& message) {
  Error error(Number(extendedCode, message), "SQLite", message + ".");
  error.With("code", Name(extendedCode));
  return error;
}

}  // namespace qmx
