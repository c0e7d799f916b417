#!/usr/bin/env bash
# suites_over_the_nodes.sh PROGRAMS: runs the suites for MariaDB over the cluster of with_cluster.sh, beside the cluster's own
# tests. PROGRAMS is the folder of the test programs. The output of a program is printed when it has ended.
set -u
programs=$1
cd "$(dirname "$0")/../.."

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
names=()
numbers=()
start() {  # NAME COMMAND...
  local name=$1
  shift
  "$@" >"$folder/$name" 2>&1 &
  names+=("$name")
  numbers+=($!)
}

# Record sets and batches through the first node. Left out is what needs a table without transactions, which a cluster does
# not replicate, and what depends on the case of tables' names: while other nodes create tables, the catalog misses one now and then.
through_one_node() {
  tests/support/run_selected.sh "$programs/recordset_tests" "*/MariaDB-*ColumnNamesAreWrittenInAnyCase*" &&
    tests/support/run_selected.sh "$programs/batches_tests" \
      "*/MariaDB-*/GroupsOnMariaDb.AreNotOpenedForATableThatCannotRollBack/*"
}
start through_one_node through_one_node

# Copies, spread over the nodes. Left out is what depends on the case of tables' names, faults of the driver, which do not
# depend on the server, and a flag that no column of integers holds.
leftOut=ControlRecords.TakeOnlyOneAsInProgress:Run.CopiesAnUpperCaseCodeLikeALowerCaseOneAndKeepsItInLogNameAndEvents
leftOut+=:OnRequest.FailsThreeTimesOverWhenTheCalendarCannotBeDeleted:*Faults*:*LostAnswers*:*LostDatabase*:*AskedAgain*
leftOut+=:*WholeCopy.LeavesTheOldRows*:ControlRecords.DoNotRoundAFlagToInProgress
for node in 1 2 3; do
  text=QMX_TEST_NODE_$node
  start copies_through_node_$node env "QMX_TEST_MARIADB=${!text}" QMX_TEST_COPY_OVER=MariaDB GTEST_TOTAL_SHARDS=3 \
    GTEST_SHARD_INDEX=$((node - 1)) "$programs/copy_tests" --gtest_brief=1 --gtest_filter="-$leftOut"
done

start runs_on_nodes tests/support/run_selected.sh "$programs/cluster_tests" "*/RunsOnNodes.*:*/CutOffNode.*"

status=0
for place in "${!names[@]}"; do
  wait "${numbers[place]}" || status=1
  echo "--- ${names[place]}"
  cat "$folder/${names[place]}"
done
exit $status
