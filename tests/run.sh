#!/usr/bin/env bash
# Runs every test of the debug build, and prints at the end what was not run and why. tests/servers/with_servers.sh runs it.
# Arguments are ctest's. Run from the root of the tree.
set -u
# Which tests there are depends on the servers that run now.
find build/debug -name '*_tests.cmake' -delete
status=0
ctest --preset debug "$@" || status=$?
tests/support/not_run.py build/debug/Testing/Temporary/LastTest.log || status=1
exit "$status"
