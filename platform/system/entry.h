// The entry of a program: what the operating system starts, and what the program makes of it.
//
// Linking qmx_entry gives the program its entry, which calls ProgramMain. Before that it calls MainHasBegun
// (early_memory.h), and lets writes to a pipe without a reader fail instead of ending the process.
#pragma once

#include <span>

namespace qmx {

// The program defines it, and returns its exit status. `words` are the program's name and its arguments, as UTF-8, and
// live until the process ends. Without a name they are empty.
int ProgramMain(std::span<const char* const> words);

}  // namespace qmx
