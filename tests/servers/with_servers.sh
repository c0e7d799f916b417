#!/usr/bin/env bash
# with_servers.sh COMMAND...: runs the command while a private PostgreSQL and a private MariaDB server listen on loopback.
#
# The command finds their connection texts in QMX_TEST_POSTGRESQL and QMX_TEST_MARIADB, and the servers' process ids in
# QMX_TEST_POSTGRESQL_PID and QMX_TEST_MARIADB_PID. Data lives in a temporary folder; the servers run as an unprivileged
# user and are always stopped by process id, even if this script is killed. The exit status is the command's.
#
# The servers are set up for speed, not for power cuts. With QMX_SERVERS_AS_DELIVERED they keep their own settings.
#
# If a server does not start, its log is printed on standard error. With CI=true this ends the run. Otherwise the command
# runs without that server's variables.
set -euo pipefail

[ $# -gt 0 ] || { echo "usage: with_servers.sh COMMAND..." >&2; exit 2; }

source "$(dirname "$0")/private_servers.sh"

fastPostgresql=(-c fsync=off -c full_page_writes=off -c autovacuum=off)
fastMariadb=(--innodb-flush-log-at-trx-commit=0 --innodb-flush-method=nosync --innodb-file-per-table=0)
if [ -n "${QMX_SERVERS_AS_DELIVERED:-}" ]; then
  fastPostgresql=()
  fastMariadb=()
fi

start_postgresql() {
  local programs port pid
  programs=$(find /usr/lib/postgresql -mindepth 2 -maxdepth 2 -name bin 2>/dev/null | sort -V | tail -n 1)
  [ -n "$programs" ] || { echo "no PostgreSQL in /usr/lib/postgresql" >&2; return 1; }
  port=$(free_port)
  printf '%s' "$password" >"$folder/password"
  chmod 644 "$folder/password"
  # Its usual way to check a password, scram-sha-256, takes each of thousands of connections three times as long.
  (become "$programs/initdb" --pgdata=postgresql --username=qmx --pwfile=password --auth=md5 --encoding=UTF8 \
    --locale=C.UTF-8 --no-sync) >"$folder/postgresql.log" 2>&1 || return 1
  become "$programs/postgres" -D postgresql -c listen_addresses=127.0.0.1 -c port="$port" \
    -c unix_socket_directories="$folder" "${fastPostgresql[@]}" -c log_min_messages=fatal >>"$folder/postgresql.log" 2>&1 &
  pid=$!
  servers+=("$pid")
  PGPASSWORD=$password answers "$pid" "$folder/postgresql" "$programs/psql" --host=127.0.0.1 --port="$port" --username=qmx \
    --dbname=postgres --tuples-only --no-align --command='show data_directory' || return 1
  export QMX_TEST_POSTGRESQL="DRIVER=PostgreSQL Unicode;SERVER=127.0.0.1;PORT=$port;DATABASE=postgres;UID=qmx;PWD={wild;{}}rose};Protocol=7.4-1"
  export QMX_TEST_POSTGRESQL_PID=$pid
}

start_mariadb() {
  local port pid
  port=$(free_port)
  cat >"$folder/users.sql" <<SQL
create user qmx@'127.0.0.1' identified by '$password';
grant all on *.* to qmx@'127.0.0.1' with grant option;
SQL
  chmod 644 "$folder/users.sql"
  (become mariadb-install-db --no-defaults --datadir="$folder/mariadb" --skip-test-db --auth-root-authentication-method=normal) \
    >"$folder/mariadb.log" 2>&1 || return 1
  become mariadbd --no-defaults --datadir="$folder/mariadb" --bind-address=127.0.0.1 --port="$port" \
    --socket="$folder/mariadb.sock" --pid-file="$folder/mariadb.pid" --skip-name-resolve --skip-log-bin \
    --character-set-server=utf8mb4 "${fastMariadb[@]}" --init-file="$folder/users.sql" >>"$folder/mariadb.log" 2>&1 &
  pid=$!
  servers+=("$pid")
  MYSQL_PWD=$password answers "$pid" "$folder/mariadb/" mariadb --no-defaults --host=127.0.0.1 --port="$port" --user=qmx \
    --skip-column-names --batch --execute='select @@datadir' || return 1
  export QMX_TEST_MARIADB="DRIVER=MariaDB Unicode;SERVER=127.0.0.1;PORT=$port;UID=qmx;PWD={wild;{}}rose}"
  export QMX_TEST_MARIADB_PID=$pid
}

# Another program may have taken the port meanwhile, so try again with another one.
for server in postgresql mariadb; do
  if ! "start_$server" && ! { rm -rf "${folder:?}/$server"; "start_$server"; }; then
    cat "$folder/$server.log" >&2 2>/dev/null || true
    echo "The $server server did not start. See its messages above." >&2
    [ "${CI:-}" != true ] || exit 1
  fi
done

run_with_servers "$@"
