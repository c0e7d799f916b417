// CONNECTION and DATABASE: the local database that a command works on.
#pragma once

#include <string>

namespace qmx {

struct DatabaseArguments {
  std::string connection;
  std::string database;  // the default database; blank keeps the connection's own
};

}  // namespace qmx
