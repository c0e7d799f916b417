#!/usr/bin/env bash
# with_cluster.sh COMMAND...: runs the command while a private MariaDB cluster of three nodes listens on loopback.
#
# The command finds the nodes' connection texts in QMX_TEST_NODE_1 to _3, and their process ids in QMX_TEST_NODE_1_PID to
# _3_PID. QMX_TEST_MARIADB is the first node's text, so that the tests for MariaDB run over the cluster. Data lives in a
# temporary folder; the servers run as an unprivileged user and are always stopped by process id, also one that a test has
# stopped by SIGSTOP. The exit status is the command's. If the nodes do not come up, their logs are printed.
#
# A node that does not answer for QMX_CLUSTER_SUSPECT seconds (5, as delivered) is taken for lost. With QMX_CLUSTER_NODES=1 the
# cluster has one node only. With QMX_SERVERS_AS_DELIVERED the nodes keep their own settings for safety and memory.
set -euo pipefail

[ $# -gt 0 ] || { echo "usage: with_cluster.sh COMMAND..." >&2; exit 2; }

source "$(dirname "$0")/private_servers.sh"

provider=$(find /usr/lib -name libgalera_smm.so 2>/dev/null | head -n 1)
[ -n "$provider" ] || { echo "no Galera in /usr/lib: install galera-4" >&2; exit 1; }

mapfile -t nodes < <(seq "${QMX_CLUSTER_NODES:-3}")
suspect=${QMX_CLUSTER_SUSPECT:-5}
quick=()
[ -n "${QMX_SERVERS_AS_DELIVERED:-}" ] || quick=(
  --innodb-flush-log-at-trx-commit=0 --innodb-flush-method=nosync --innodb-buffer-pool-size=64M --innodb-log-file-size=32M)
declare -A port group transfer
choose_ports() {
  local node
  for node in "${nodes[@]}"; do
    port[$node]=$(free_port) group[$node]=$(free_port) transfer[$node]=$(free_port)
  done
  members=$(for node in "${nodes[@]}"; do echo "127.0.0.1:${group[$node]}"; done | paste -sd,)
}

make_data() {
  local node
  cat >"$folder/users.sql" <<SQL
create user qmx@'127.0.0.1' identified by '$password';
grant all on *.* to qmx@'127.0.0.1' with grant option;
SQL
  chmod 644 "$folder/users.sql"
  (become mariadb-install-db --no-defaults --datadir="$folder/node1" --skip-test-db --auth-root-authentication-method=normal) \
    >"$folder/node1.log" 2>&1 || return 1
  for node in "${nodes[@]:1}"; do cp --archive "$folder/node1" "$folder/node$node"; done
  for node in "${nodes[@]}"; do (become mkdir "$folder/tmp$node"); done
}

start_node() {
  local node=$1 pid
  shift
  become mariadbd --no-defaults --datadir="$folder/node$node" --tmpdir="$folder/tmp$node" --socket="$folder/node$node.sock" \
    --pid-file="$folder/node$node.pid" --port="${port[$node]}" --bind-address=127.0.0.1 --skip-name-resolve \
    --character-set-server=utf8mb4 "${quick[@]}" --performance-schema=off \
    --binlog-format=ROW --default-storage-engine=InnoDB --innodb-autoinc-lock-mode=2 \
    --wsrep-on=ON --wsrep-provider="$provider" --wsrep-node-address="127.0.0.1:${group[$node]}" \
    --wsrep-cluster-address="gcomm://$members" \
    --wsrep-provider-options="base_port=${group[$node]};ist.recv_addr=127.0.0.1:${transfer[$node]};gcache.size=32M;base_dir=$folder/node$node;evs.suspect_timeout=PT${suspect}S;evs.inactive_timeout=PT$((3 * suspect))S" \
    --wsrep-sst-method=rsync --wsrep-sst-receive-address="127.0.0.1:$(free_port)" \
    "$@" >>"$folder/node$node.log" 2>&1 &
  pid=$!
  servers+=("$pid")
  export "QMX_TEST_NODE_${node}_PID=$pid"
  MYSQL_PWD=$password answers "$pid" "$folder/node$node/ ON" mariadb --no-defaults --host=127.0.0.1 --port="${port[$node]}" \
    --user=qmx --skip-column-names --batch \
    --execute="select concat(@@datadir, ' ', variable_value) from information_schema.global_status where variable_name = 'wsrep_ready'"
}

start_cluster() {
  choose_ports
  local node
  make_data && start_node 1 --wsrep-new-cluster --init-file="$folder/users.sql" || return 1
  for node in "${nodes[@]:1}"; do start_node "$node" || return 1; done
}

kill_nodes() {
  local pid
  for pid in "${servers[@]}"; do
    kill -KILL "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
  done
  servers=()
  rm -rf "$folder"/node? "$folder"/tmp?
}

# Another program may have taken a port meanwhile, so try again with others.
if ! start_cluster && ! { kill_nodes; start_cluster; }; then
  tail --lines=60 "$folder"/node*.log >&2 || true
  echo "The cluster did not start. See its messages above." >&2
  exit 1
fi

for node in "${nodes[@]}"; do
  export "QMX_TEST_NODE_$node=DRIVER=MariaDB Unicode;SERVER=127.0.0.1;PORT=${port[$node]};UID=qmx;PWD={wild;{}}rose}"
done
export QMX_TEST_MARIADB=$QMX_TEST_NODE_1

run_with_servers "$@"
