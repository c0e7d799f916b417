// An ODBC driver for tests that passes every call on to a real one, and makes some calls fail.
//
// It is linked with the real driver and replaces the few functions that can fail. The variable QMX_ODBC_FAULT says
// which call fails, as "FUNCTION FIRST COUNT WHEN STATE NATIVE":
//   FUNCTION  SQLEndTran, SQLSetConnectAttr (only if it sets the commit mode), SQLPrepare, SQLBindParameter, SQLExecute
//             (SQLExecDirect too), SQLFetch, SQLGetData, SQLColumns, or "any" of these
//   FIRST     the first call that fails, counted from 1 since the variable was changed; 0 for none
//   COUNT     how many calls in a row fail; 0 for all that follow
//   WHEN      "before" it is done, or "after": it is done, and the answer is lost
//   STATE, NATIVE   the SQLSTATE and the native code of the error
// The file that QMX_ODBC_FAULT_TOLD names is created at the first failure. Calls are also counted as shared_count.h
// does.
#include <dlfcn.h>
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <sstream>
#include <string>

#include "tests/support/shared_count.h"

namespace {

struct Fault {
  std::string function;
  long first = 0;
  long count = 0;
  std::string when;
  std::string state;
  SQLINTEGER native = 0;
};

std::mutex mutex;  // of all that follows
std::string planText;
Fault plan;
SharedCount calls{};
SQLHANDLE failed = nullptr;  // the handle whose diagnostic record is ours

void ReadPlan() {
  const char* text = std::getenv("QMX_ODBC_FAULT");
  if (planText == (text ? text : "")) return;
  planText = text ? text : "";
  plan = {};
  calls = {};
  std::istringstream words(planText);
  words >> plan.function >> plan.first >> plan.count >> plan.when >> plan.state >> plan.native;
}

void ForgetRecord() {
  const std::lock_guard lock(mutex);
  failed = nullptr;
}

bool IsToFail(const char* function) {
  ForgetRecord();
  const std::lock_guard lock(mutex);
  ReadPlan();
  if (plan.function != function && plan.function != "any") return false;
  static SharedCount* const shared = ShareCount();
  IsStruckCall(shared, plan.first, plan.count);
  return IsStruckCall(&calls, plan.first, plan.count);
}

SQLRETURN Fail(SQLHANDLE handle) {
  const std::lock_guard lock(mutex);
  failed = handle;
  if (const char* told = std::getenv("QMX_ODBC_FAULT_TOLD")) {
    if (std::FILE* file = std::fopen(told, "w")) std::fclose(file);
  }
  return SQL_ERROR;
}

template <typename Call>
SQLRETURN Passed(const char* function, SQLHANDLE handle, Call&& call) {
  const bool fails = IsToFail(function);
  if (fails && plan.when == "before") return Fail(handle);
  const SQLRETURN result = call();
  return fails ? Fail(handle) : result;
}

template <typename Function>
Function* Real(Function*, const char* name) {
  static void* const driver = dlopen(REAL_DRIVER, RTLD_NOW | RTLD_NOLOAD);
  return reinterpret_cast<Function*>(dlsym(driver, name));
}

constexpr const char* kText = "[Test] This call was made to fail.";

template <typename Char>
void Copy(const char* text, Char* copy, std::size_t room) {
  std::size_t at = 0;
  for (; text[at] != '\0' && at + 1 < room; ++at) copy[at] = static_cast<Char>(text[at]);
  if (room > 0) copy[at] = 0;
}

bool IsOurs(SQLHANDLE handle) {
  const std::lock_guard lock(mutex);
  return failed && failed == handle;
}

// The one record of a call that was made to fail. The driver manager reads it more than once.
template <typename Char>
SQLRETURN OurRecord(SQLSMALLINT record, Char* state, SQLINTEGER* native, Char* text, SQLSMALLINT room,
                    SQLSMALLINT* length) {
  const std::lock_guard lock(mutex);
  if (record > 1) return SQL_NO_DATA;
  Copy(plan.state.c_str(), state, 6);
  *native = plan.native;
  Copy(kText, text, static_cast<std::size_t>(room));
  if (length) *length = static_cast<SQLSMALLINT>(std::strlen(kText));
  return SQL_SUCCESS;
}

}  // namespace

extern "C" {

SQLRETURN SQL_API SQLEndTran(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT completion) {
  static auto* const real = Real(&SQLEndTran, "SQLEndTran");
  return Passed("SQLEndTran", handle, [&] { return real(type, handle, completion); });
}

SQLRETURN SQL_API SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER length) {
  static auto* const real = Real(&SQLSetConnectAttrW, "SQLSetConnectAttrW");
  if (attribute != SQL_ATTR_AUTOCOMMIT) return real(handle, attribute, value, length);
  return Passed("SQLSetConnectAttr", handle, [&] { return real(handle, attribute, value, length); });
}

SQLRETURN SQL_API SQLSetConnectAttr(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER length) {
  static auto* const real = Real(&SQLSetConnectAttr, "SQLSetConnectAttr");
  if (attribute != SQL_ATTR_AUTOCOMMIT) return real(handle, attribute, value, length);
  return Passed("SQLSetConnectAttr", handle, [&] { return real(handle, attribute, value, length); });
}

SQLRETURN SQL_API SQLPrepareW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length) {
  static auto* const real = Real(&SQLPrepareW, "SQLPrepareW");
  return Passed("SQLPrepare", handle, [&] { return real(handle, text, length); });
}

SQLRETURN SQL_API SQLExecute(SQLHSTMT handle) {
  static auto* const real = Real(&SQLExecute, "SQLExecute");
  return Passed("SQLExecute", handle, [&] { return real(handle); });
}

SQLRETURN SQL_API SQLExecDirectW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length) {
  static auto* const real = Real(&SQLExecDirectW, "SQLExecDirectW");
  return Passed("SQLExecute", handle, [&] { return real(handle, text, length); });
}

SQLRETURN SQL_API SQLBindParameter(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT direction, SQLSMALLINT valueType,
                                   SQLSMALLINT type, SQLULEN size, SQLSMALLINT digits, SQLPOINTER value, SQLLEN room,
                                   SQLLEN* length) {
  static auto* const real = Real(&SQLBindParameter, "SQLBindParameter");
  return Passed("SQLBindParameter", handle,
                [&] { return real(handle, number, direction, valueType, type, size, digits, value, room, length); });
}

SQLRETURN SQL_API SQLFetch(SQLHSTMT handle) {
  static auto* const real = Real(&SQLFetch, "SQLFetch");
  return Passed("SQLFetch", handle, [&] { return real(handle); });
}

SQLRETURN SQL_API SQLGetData(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER value, SQLLEN room,
                             SQLLEN* length) {
  static auto* const real = Real(&SQLGetData, "SQLGetData");
  return Passed("SQLGetData", handle, [&] { return real(handle, column, type, value, room, length); });
}

SQLRETURN SQL_API SQLColumnsW(SQLHSTMT handle, SQLWCHAR* catalog, SQLSMALLINT catalogSize, SQLWCHAR* schema,
                              SQLSMALLINT schemaSize, SQLWCHAR* table, SQLSMALLINT tableSize, SQLWCHAR* column,
                              SQLSMALLINT columnSize) {
  static auto* const real = Real(&SQLColumnsW, "SQLColumnsW");
  return Passed("SQLColumns", handle, [&] {
    return real(handle, catalog, catalogSize, schema, schemaSize, table, tableSize, column, columnSize);
  });
}

SQLRETURN SQL_API SQLGetDiagRecW(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT record, SQLWCHAR* state,
                                 SQLINTEGER* native, SQLWCHAR* text, SQLSMALLINT room, SQLSMALLINT* length) {
  static auto* const real = Real(&SQLGetDiagRecW, "SQLGetDiagRecW");
  return IsOurs(handle) ? OurRecord(record, state, native, text, room, length)
                        : real(type, handle, record, state, native, text, room, length);
}

SQLRETURN SQL_API SQLGetDiagFieldW(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT record, SQLSMALLINT field,
                                   SQLPOINTER value, SQLSMALLINT room, SQLSMALLINT* length) {
  static auto* const real = Real(&SQLGetDiagFieldW, "SQLGetDiagFieldW");
  return IsOurs(handle) ? SQL_ERROR : real(type, handle, record, field, value, room, length);
}

SQLRETURN SQL_API SQLGetDiagRec(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT record, SQLCHAR* state,
                                SQLINTEGER* native, SQLCHAR* text, SQLSMALLINT room, SQLSMALLINT* length) {
  static auto* const real = Real(&SQLGetDiagRec, "SQLGetDiagRec");
  return IsOurs(handle) ? OurRecord(record, state, native, text, room, length)
                        : real(type, handle, record, state, native, text, room, length);
}

SQLRETURN SQL_API SQLGetDiagField(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT record, SQLSMALLINT field,
                                  SQLPOINTER value, SQLSMALLINT room, SQLSMALLINT* length) {
  static auto* const real = Real(&SQLGetDiagField, "SQLGetDiagField");
  return IsOurs(handle) ? SQL_ERROR : real(type, handle, record, field, value, room, length);
}

}  // extern "C"
