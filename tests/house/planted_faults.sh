#!/usr/bin/env bash
# Every planted fault (docs/tests.md) still fits its source: its text is there exactly once. Run from the root of the tree.
exec python3 -B "$(dirname "$0")/../../scripts/mutants.py" --check
