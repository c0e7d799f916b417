#include "tools/qmxadmin/local_database.h"

namespace qmx {

LocalDatabase::LocalDatabase(const DatabaseArguments& arguments)
    : connection_(database_.CreateConnection("ADODB.Connection")) {
  connection_->Open(arguments.connection, "", "");
  const bool named = arguments.database.find_first_not_of(' ') != std::string::npos;
  if (named) connection_->defaultdatabase(arguments.database);
}

}  // namespace qmx
