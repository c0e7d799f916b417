# The tests that are not built for Windows, by their place in the tree, each with the reason.
list(APPEND QMX_LEFT_OUT
  # What they test is not built there.
  tests/bench
  tests/bridges
  tests/packaging
  # They check the tree, which ./test.sh does.
  tests/house
  # They start database servers, or make calls fail beneath the program with a library that the C library loads.
  tests/cluster
  tests/faults
  tests/whole
  tests/support/odbc_faults
  # They need sockets of POSIX.
  tests/platform/odbc/silent_connection_test.cpp
  tests/platform/odbc/watchdog_test.cpp
  # platform/posix; tests/platform/windows has the same for Windows.
  tests/platform/posix
  # They replace operator new for the whole program, which a static executable cannot do for what is inlined in it.
  tests/platform/batches/memory_test.cpp
  tests/startup/scarce_memory
  # Line ends and time zones of Linux, files that another user may not read, and a bridge to Java.
  tests/sandbox/audit_test.cpp
  tests/sandbox/failure_test.cpp
  tests/sandbox/java
  tests/sandbox/make_test.cpp
  tests/sandbox/work_test.cpp
  # The loader of Linux tells which libraries are loaded.
  tests/platform/components/installed_components_test.cpp
  # Files and folders that another user may not write or read. tests/platform/windows has what Windows has instead.
  tests/platform/sqlite/read_only_test.cpp
  # A limit of the size of files, and pipes that are files. tests/platform/windows has what Windows has instead.
  tests/platform/run_records/unwritable_record_test.cpp
  tests/platform/trace/unwritable_trace_test.cpp
  # Terminals, signals, shells and libraries of Linux. tests/windows/qmxadmin_test.py runs qmxadmin beside the program of Linux.
  tests/tools/qmxadmin/calendar
  tests/tools/qmxadmin/check_test.cpp
  tests/tools/qmxadmin/command_line_test.cpp
  tests/tools/qmxadmin/components_test.cpp
  tests/tools/qmxadmin/copy
  tests/tools/qmxadmin/interrupted_expansion_test.cpp
  tests/tools/qmxadmin/method_test.cpp
  tests/tools/qmxadmin/refused_expansion_test.cpp
  tests/tools/qmxadmin/release_test.cpp
  tests/tools/qmxadmin/runs
  tests/tools/qmxadmin/settings_file_test.cpp
  tests/tools/qmxadmin/status_test.cpp
  tests/tools/qmxadmin/verify
  # Pseudo-terminals and signals. tests/windows runs the programs in a terminal.
  tests/platform/progress/terminal_progress_test.cpp
  tests/support/terminal_process.cpp
  tests/tools/qmxadmin/system/end_requests_test.cpp)
