#include "scheduling/message_board.h"

#include <cstdlib>

namespace orvan {

std::filesystem::path MessageBoard() {
  const char* const board = std::getenv("QMX_MESSAGE_BOARD");
  return board ? board : "";
}

}  // namespace orvan
