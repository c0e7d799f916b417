// The handle of a statement. Calls that may wait for the server go through it, so that the watchdog sees them.
#pragma once

#include "platform/odbc/connection.h"
#include "platform/odbc/handle.h"

namespace qmx {

class StatementHandle {
 public:
  explicit StatementHandle(const OdbcConnection& connection)  // borrowed
      : connection_(connection), handle_(HandleOf(connection)) {}
  ~StatementHandle() {
    const WatchedCall watched = Watched("a statement was closed");
    handle_.Free();
  }
  StatementHandle(const StatementHandle&) = delete;
  StatementHandle& operator=(const StatementHandle&) = delete;

  SQLHANDLE Get() const { return handle_.Get(); }
  void Check(SQLRETURN result) const { handle_.Check(result); }

  // For calls whose failure does not matter.
  WatchedCall Watched(const char* action) const { return connection_.WatchedAsStatement(action); }

  // Calls function(handle, arguments...). Raises if the watchdog ended the connection, whatever the call returned.
  template <typename Function, typename... Arguments>
  SQLRETURN Call(const char* action, Function&& function, Arguments... arguments) const {
    SQLRETURN result;
    {
      const WatchedCall watched = Watched(action);
      result = function(Get(), arguments...);
    }
    connection_.RequireNoSilence(handle_, result);
    return result;
  }

  // The same, and raises the diagnostic records as an error if the call failed.
  template <typename Function, typename... Arguments>
  void Require(const char* action, Function&& function, Arguments... arguments) const {
    Check(Call(action, function, arguments...));
  }

 private:
  // Raises if the server is silent, because the driver would wait for it.
  static SQLHANDLE HandleOf(const OdbcConnection& connection) {
    connection.RequireNoSilence();
    return connection.Handle();
  }

  const OdbcConnection& connection_;
  OdbcHandle<SQL_HANDLE_STMT> handle_;
};

}  // namespace qmx
