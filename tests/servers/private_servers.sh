# What the scripts that start private servers share. Sourced by them.
#
# Data lives in a temporary folder; the servers run as an unprivileged user and are always stopped by process id, even if
# the script is killed.

# Ignore leaks of the drivers.
export LSAN_OPTIONS="${LSAN_OPTIONS:+$LSAN_OPTIONS:}suppressions=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/driver_leaks.txt:print_suppressions=0"

folder=$(mktemp --directory "${TMPDIR:-/tmp}/qmx-servers-XXXXXX")
mkdir "$folder/tmp"  # for the servers' own temporary files: two MariaDB servers disturb each other in a shared one
password="wild;{}rose"  # needs quoting in a connection text, so that wrong quoting fails
unprivileged=()
if [ "$(id -u)" -eq 0 ]; then
  unprivileged=(--reuid nobody --regid "$(id -g nobody)" --clear-groups)
  chown nobody "$folder" "$folder/tmp"
fi
servers=()
command=

# become PROGRAM...: replaces this shell by the program, in the temporary folder, and as nobody if we are root. The program
# gets SIGQUIT when its parent dies (a second setpriv, because changing the user resets that).
become() {
  cd "$folder"
  HOME=$folder TMPDIR=$folder/tmp exec setpriv "${unprivileged[@]}" setpriv --pdeathsig QUIT "$@"
}

running() { grep -q '^State:\s*[^Z]' "/proc/$1/status" 2>/dev/null; }  # not one that has ended and waits to be reaped

stop() {
  local status=$? pid
  trap '' INT TERM HUP
  [ -z "$command" ] || kill -TERM "$command" 2>/dev/null || true
  for pid in "${servers[@]}"; do kill -QUIT "$pid" 2>/dev/null || true; done
  for pid in "${servers[@]}"; do
    for _ in {1..100}; do
      running "$pid" || break
      sleep 0.1
    done
    kill -KILL "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
  done
  rm -rf "$folder"
  exit "$status"
}
trap stop EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

free_port() {
  local port
  while :; do
    port=$((RANDOM % 10000 + 20000))
    (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null || break
  done
  echo "$port"
}

# answers PID DATA PROBE...: waits until the probe prints DATA, the folder of the server's data. Fails if the process ends or
# after half a minute. If another server has taken the port, the probe reaches that one, and this process ends.
answers() {
  local pid=$1 data=$2
  shift 2
  for _ in {1..300}; do
    running "$pid" || return 1
    [ "$("$@" 2>/dev/null)" != "$data" ] || return 0
    sleep 0.1
  done
  return 1
}

# run_with_servers COMMAND...: runs the command and ends the script with its exit status.
run_with_servers() {
  local status
  "$@" <&0 &
  command=$!
  wait "$command" && status=0 || status=$?
  command=
  exit "$status"
}
