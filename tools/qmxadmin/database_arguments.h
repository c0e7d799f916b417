// CONNECTION and DATABASE: which local database a command is about.
#pragma once

#include <string>

namespace qmx {

struct DatabaseArguments {
  std::string connection;
  std::string database;  // made default; blank keeps the connection's own
};

}  // namespace qmx
