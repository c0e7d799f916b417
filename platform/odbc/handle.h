// An ODBC handle that frees itself and checks the results of calls.
#pragma once

#include <sql.h>

#include <new>

#include "platform/odbc/errors.h"

namespace qmx {

template <SQLSMALLINT type>
class OdbcHandle {
 public:
  explicit OdbcHandle(SQLHANDLE parent) {
    if (SQL_SUCCEEDED(SQLAllocHandle(type, parent, &handle_))) return;
    if (parent == SQL_NULL_HANDLE) throw std::bad_alloc();
    throw OdbcError(type == SQL_HANDLE_STMT ? SQL_HANDLE_DBC : SQL_HANDLE_ENV, parent);
  }
  ~OdbcHandle() { Free(); }
  OdbcHandle(const OdbcHandle&) = delete;
  OdbcHandle& operator=(const OdbcHandle&) = delete;

  SQLHANDLE Get() const { return handle_; }

  // Frees the handle before its destructor does.
  void Free() {
    if (handle_ != SQL_NULL_HANDLE) SQLFreeHandle(type, handle_);
    handle_ = SQL_NULL_HANDLE;
  }

  // Raises the diagnostic records as an error if a call on this handle failed.
  void Check(SQLRETURN result) const {
    if (!SQL_SUCCEEDED(result)) throw OdbcError(type, handle_);
  }

 private:
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

}  // namespace qmx
