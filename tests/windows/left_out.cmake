# The tests that are not built for Windows, by their place in the tree, each with the reason.
list(APPEND QMX_LEFT_OUT
  # What they test is not built there.
  tests/bench
  tests/bridges
  tests/packaging
  tests/tools
  # They check the tree, which ./test.sh does.
  tests/house
  # They start database servers, or make calls fail beneath the program with a library that the C library loads.
  tests/cluster
  tests/faults
  tests/whole
  tests/platform/odbc
  tests/sandbox
  tests/support/odbc_faults
  # platform/posix; tests/platform/windows has the same for Windows.
  tests/platform/posix
  # They replace operator new for the whole program, which a static executable cannot do for what is inlined in it.
  tests/platform/batches/memory_test.cpp
  tests/startup/scarce_memory
  # The interposed functions of the C library, or files that another user may not read.
  tests/platform/components/installed_components_test.cpp
  tests/platform/sqlite/files_test.cpp
  tests/platform/sqlite/read_only_test.cpp
  # They fork, or limit the size of files.
  tests/platform/sqlite/sharing_test.cpp
  tests/platform/run_records/run_record_test.cpp
  tests/platform/run_records/sudden_end_test.cpp
  tests/platform/trace/trace_test.cpp
  # Pseudo-terminals and signals.
  tests/platform/progress/progress_test.cpp
  tests/support/terminal_process.cpp)
