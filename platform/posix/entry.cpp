#include "platform/system/entry.h"

#include <csignal>
#include <cstddef>

#include "platform/system/early_memory.h"

int main(int argc, char** argv) {
  qmx::MainHasBegun();
  std::signal(SIGPIPE, SIG_IGN);
  return qmx::ProgramMain({argv, static_cast<std::size_t>(argc)});
}
