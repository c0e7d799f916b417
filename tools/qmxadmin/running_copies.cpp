#include "tools/qmxadmin/running_copies.h"

#include <sstream>

#include "platform/names.h"
#include "platform/system/clock.h"
#include "platform/trim.h"
#include "tools/qmxadmin/system/processes.h"

namespace qmx {
namespace {

// Returns the first three pieces of the arguments (connection, database, table), or nothing if there are fewer.
std::vector<std::string> PiecesOf(const std::string& arguments) {
  std::istringstream text(arguments);
  std::vector<std::string> pieces;
  for (std::string piece; pieces.size() < 3 && std::getline(text, piece, ',');) pieces.emplace_back(Trimmed(piece));
  return pieces.size() == 3 ? pieces : std::vector<std::string>();
}

std::string TableOf(const std::vector<std::string>& pieces) {
  return pieces.empty() ? "" : FoldName(pieces[2].substr(0, pieces[2].find('=')));
}

}  // namespace

std::vector<RunningCopy> RunningCopiesOf(const std::string& tableCode) {
  std::vector<RunningCopy> copies;
  for (const RunningProgram& program : RunningPrograms("qmxdatacopy")) {
    const std::vector<std::string> pieces = PiecesOf(program.arguments);
    if (TableOf(pieces) != FoldName(tableCode)) continue;
    copies.push_back({program.process, pieces[0], pieces[1], LocalTime(program.start)});
  }
  return copies;
}

}  // namespace qmx
