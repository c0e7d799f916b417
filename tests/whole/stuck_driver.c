// An ODBC driver whose log-in never returns, whatever happens to its connection.
#include <sql.h>
#include <sqlext.h>
#include <unistd.h>

static int handles;

SQLRETURN SQL_API SQLAllocHandle(SQLSMALLINT type, SQLHANDLE parent, SQLHANDLE* handle) {
  (void)type, (void)parent;
  *handle = &handles;
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLFreeHandle(SQLSMALLINT type, SQLHANDLE handle) {
  (void)type, (void)handle;
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLSetEnvAttr(SQLHENV environment, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER length) {
  (void)environment, (void)attribute, (void)value, (void)length;
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLSetConnectAttr(SQLHDBC connection, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER length) {
  (void)connection, (void)attribute, (void)value, (void)length;
  return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLDriverConnect(SQLHDBC connection, SQLHWND window, SQLCHAR* text, SQLSMALLINT textLength,
                                   SQLCHAR* whole, SQLSMALLINT wholeSize, SQLSMALLINT* wholeLength,
                                   SQLUSMALLINT completion) {
  (void)connection, (void)window, (void)text, (void)textLength;
  (void)whole, (void)wholeSize, (void)wholeLength, (void)completion;
  for (;;) pause();
}
