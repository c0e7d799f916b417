// The file that the scheduling server writes.
#pragma once

#include <filesystem>

namespace orvan {

std::filesystem::path MessageBoard();  // $QMX_MESSAGE_BOARD; empty if it is not set

}  // namespace orvan
