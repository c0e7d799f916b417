// An ODBC handle that frees itself, and the check of what calls on it return.
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

  // Raises what the diagnostic records say when a call on this handle did not succeed.
  void Check(SQLRETURN result) const {
    if (!SQL_SUCCEEDED(result)) throw OdbcError(type, handle_);
  }

 private:
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

}  // namespace qmx
