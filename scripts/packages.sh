# The Debian packages that this project needs, and how to install them. Sourced by bench.sh, demo.sh and test.sh.

demoPackages=(g++ cmake ninja-build libsqlite3-dev sqlite3 unixodbc-dev libcli11-dev nlohmann-json3-dev
              libfmt-dev libutfcpp-dev zlib1g-dev)
serverPackages=(unixodbc odbc-postgresql odbc-mariadb postgresql mariadb-server-core mariadb-client-core)
clusterPackages=(galera-4 mariadb-server rsync)  # mariadb-server has the scripts that bring a node up to date
testPackages=("${demoPackages[@]}" "${serverPackages[@]}" "${clusterPackages[@]}" libgtest-dev libgmock-dev libbenchmark-dev locales clang-14 clang-format-14
              clang-tidy-14 default-jdk-headless dpkg-dev file groff-base junit4 libfaketime libsqliteodbc
              libxerial-sqlite-jdbc-java lintian logrotate prometheus python3 systemd valgrind)
fuzzPackages=("${demoPackages[@]}" clang-14 libclang-rt-14-dev llvm-14 python3)
benchPackages=("${demoPackages[@]}" "${serverPackages[@]}" "${clusterPackages[@]}" default-jdk-headless gdal-bin libbenchmark-dev pgloader python3
               python3-matplotlib strace)
windowsPackages=(cmake ninja-build gcc make tcl dpkg-dev g++-mingw-w64-x86-64-posix libz-mingw-w64-dev wine wine64 googletest
                 libcli11-dev nlohmann-json3-dev libfmt-dev libutfcpp-dev sqlite3 python3)

# install_packages PACKAGE...: installs missing packages. Needs no network if none is missing.
install_packages() {
  local package missing=()
  for package in "$@"; do
    dpkg-query --show --showformat='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return

  local asRoot=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null || ! sudo -v; then
      echo "These Debian packages are missing: ${missing[*]}" >&2
      echo "Installing them needs root, and sudo does not work here. As root, run: apt-get install ${missing[*]}" >&2
      exit 1
    fi
    asRoot=(sudo)
  fi
  echo "Installing ${missing[*]}"
  local log policy=/usr/sbin/policy-rc.d failed=
  log=$(mktemp)
  # Only the programs of the database servers are needed, so do not start their services.
  if [ -e "$policy" ]; then policy=; else printf '#!/bin/sh\nexit 101\n' | "${asRoot[@]}" install /dev/stdin "$policy"; fi
  { "${asRoot[@]}" apt-get update && "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install --yes \
      --no-install-recommends "${missing[@]}"; } >"$log" 2>&1 || failed=yes
  [ -z "$policy" ] || "${asRoot[@]}" rm -f "$policy"
  if [ -n "$failed" ]; then
    cat "$log" >&2
    echo "The packages could not be installed. See the messages above." >&2
    exit 1
  fi
  rm -f "$log"
}

# build_preset PRESET [TARGET...]: configures and builds. Prints the tools' output only if something failed.
build_preset() {
  local log preset=$1
  shift
  log=$(mktemp)
  echo "Building ($preset)"
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" --target "${@:-all}"; } >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
  fi
  rm -f "$log"
}
