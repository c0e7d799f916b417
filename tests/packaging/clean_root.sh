#!/usr/bin/env bash
# clean_root.sh BUILD: makes the Debian packages of a build tree and installs them into a root of their own, which holds
# nothing but the packages that they depend on. There a sandbox ERP and a local database are made and a table is copied, as
# an operator would. Needs neither a network nor another build.
set -euo pipefail

build=$1
fail() {
  echo "$*" >&2
  exit 1
}
[ -x "$build/bin/qmxdatacopy" ] && [ -f "$build/CPackConfig.cmake" ] ||
  fail "There is no build in $build; make it with: cmake --preset release && cmake --build --preset release"

work=$(mktemp --directory "${TMPDIR:-/tmp}/qmx-packages-XXXXXX")
trap 'rm -rf "$work"' EXIT
root=$work/root

cpack --config "$build/CPackConfig.cmake" -B "$work/packages" >"$work/cpack.log" 2>&1 || fail "$(cat "$work/cpack.log")"
packages=("$work"/packages/qmxdatacopy_*.deb "$work"/packages/qmxdatacopy-sandbox_*.deb)
java=$(compgen -G "$work/packages/qmxdatacopy-java_*.deb") || [ -z "${CI:-}" ] || fail "The Java bridge was not built: install a JDK"
packages+=($java)

# depends FIELD-TEXT: the installed packages that it names, of alternatives the first installed one.
depends() {
  local group name alternatives
  while IFS= read -r group; do
    IFS='|' read -ra alternatives <<<"$group"
    for name in "${alternatives[@]}"; do
      name=$(sed 's/([^)]*)//; s/:any//; s/ //g' <<<"$name")
      dpkg-query --show --showformat='${binary:Package} ${db:Status-Status}\n' "$name" 2>/dev/null | sed -n 's/ installed$//p' |
        head -n 1 | grep . && break
    done || true
  done < <(tr ',' '\n' <<<"$1")
}

# Everything that the packages need, and what that needs; what is not installed here is noticed by dpkg below.
needed=()
declare -A seen=()
queue=($(for package in "${packages[@]}"; do depends "$(dpkg-deb --field "$package" Depends)"; done))
[ -z "$java" ] || queue+=($(depends "$(dpkg-deb --field "$java" Recommends)"))  # its JVM
while [ ${#queue[@]} -gt 0 ]; do
  package=${queue[0]}
  queue=("${queue[@]:1}")
  [ -z "${seen[$package]:-}" ] || continue
  seen[$package]=yes
  needed+=("$package")
  queue+=($(depends "$(dpkg-query --show --showformat='${Pre-Depends},${Depends}' "$package")"))
done
echo "The root holds ${needed[*]}"

# A root with those packages, as dpkg itself would have left it.
mkdir -p "$root"/{usr/{bin,sbin,lib,lib64},tmp,var/log,var/lib/dpkg/info}
ln -s usr/bin usr/sbin usr/lib usr/lib64 "$root"
dpkg --listfiles "${needed[@]}" | sort --unique | while IFS= read -r file; do
  if [ -L "$file" ] || [ -f "$file" ]; then echo "${file#/}"; fi
done | tar --create --directory=/ --files-from=- | tar --extract --directory="$root" --keep-directory-symlink
dpkg-query --status "${needed[@]}" >"$root/var/lib/dpkg/status"

# dpkg itself sees whether something is missing. A machine that keeps no manuals is told to keep these. The packages' scripts run
# outside the root and are told of it, since it has no shell.
in_root() { dpkg --root="$root" --force-not-root --force-script-chrootless --path-include='*' "$@" >"$work/dpkg.log" 2>&1 || fail "$(cat "$work/dpkg.log")"; }
in_root --install "${packages[@]}"

# The user and the folders; only root gives them to that user.
grep -q '^qmxdatacopy:.*:/var/lib/qmxdatacopy:' "$root/etc/passwd" || fail "The user qmxdatacopy was not made"
for folder in lib log; do
  [ "$(stat --format=%a "$root/var/$folder/qmxdatacopy")" = 750 ] || fail "/var/$folder/qmxdatacopy has another mode than 750"
  owner=$(sed -n 's/^qmxdatacopy:[^:]*:\([0-9]*\):.*/\1/p' "$root/etc/passwd")
  [ "$(id -u)" -ne 0 ] || [ "$(stat --format=%u "$root/var/$folder/qmxdatacopy")" = "$owner" ] ||
    fail "/var/$folder/qmxdatacopy does not belong to qmxdatacopy"
done

# The settings: comments only, closed to others, and the package's conffile.
settings=$root/etc/default/qmxdatacopy
! grep -v '^#' "$settings" | grep . || fail "$settings sets something"
group=$(sed -n 's/^qmxdatacopy:[^:]*:\([0-9]*\):.*/\1/p' "$root/etc/group")
[ "$(stat --format=%a "$settings")" = 640 ] || fail "$settings has the mode $(stat --format=%a "$settings"), not 640"
[ "$(id -u)" -ne 0 ] || [ "$(stat --format=%u:%g "$settings")" = "0:$group" ] || fail "$settings does not belong to root and the group qmxdatacopy"
dpkg-query --admindir="$root/var/lib/dpkg" --show --showformat='${Conffiles}\n' qmxdatacopy | grep -q '^ /etc/default/qmxdatacopy ' ||
  fail "$settings is no conffile"

# The sandbox and the Java bridge go with later versions of the programs too.
for package in "${packages[@]:1}"; do
  dpkg-deb --field "$package" Depends | grep -q 'qmxdatacopy (>= ' || fail "$package is tied to one version of qmxdatacopy"
done

# Programs and component servers are hardened.
for file in "$root"/usr/bin/{qmxdatacopy,qmxadmin,orvan-sandbox} "$root"/usr/lib/*/qmxdatacopy/components/*.so; do
  readelf --dynamic --wide "$file" | grep -E 'BIND_NOW|Flags:.* NOW' >/dev/null || fail "$file binds functions late"
done
readelf --dyn-syms --wide "$root/usr/bin/qmxdatacopy" | grep '_chk@' >/dev/null || fail "qmxdatacopy does not check buffers"

# inside PROGRAM...: in that root; without the rights of root in a user namespace of our own.
variables=(HOME=/)
inside() {
  local enter=()
  [ "$(id -u)" -eq 0 ] || enter=(unshare --user --map-root-user)
  env --ignore-environment "${variables[@]}" "${enter[@]}" "$(PATH=$PATH:/usr/sbin command -v chroot)" "$root" "$@"
}

version=$(dpkg-deb --field "${packages[0]}" Version)
[ "$(inside /usr/bin/qmxdatacopy --version)" = "qmxdatacopy ${version%-*}" ] || fail "qmxdatacopy tells another version"

mkdir -p "$root/var/lib/qmx" "$root/var/log/qmx"
local_database='Provider=SQLite;Data Source=/var/lib/qmx/local.db'
inside /usr/bin/orvan-sandbox make /var/lib/qmx/orvan.db >/dev/null
inside /usr/bin/qmxadmin init "$local_database" '' >/dev/null
inside /usr/bin/qmxdatacopy "$local_database,,tsmdm140,/var/log/qmx,OrvanSandbox,/var/lib/qmx/orvan.db,17" 2>"$work/board" ||
  fail "The copy failed: $(cat "$work/board")"
grep -q 'Service Employees (tsmdm140) : Copy result. Added - 30;' "$work/board" ||
  fail "The scheduling server was not told of 30 employees: $(cat "$work/board")"
rows=$(echo 'select count(*), min(emno), max(emno) from tsmdm140;' | sqlite3 "$root/var/lib/qmx/local.db")
[ "$rows" = '30|E00001|E00030' ] || fail "30 employees were expected in the local database; there are $rows"

# With its settings taken out of their comments the file alone suffices, and an upgrade keeps it.
sed -i 's/^#\(QMX_\(CONNECTION\|DATABASE\|LOGS\|COMPONENT\|REQUEST\)=\)/\1/' "$settings"
inside /usr/bin/orvan-sandbox make /var/lib/qmxdatacopy/orvan.db >/dev/null
inside /usr/bin/qmxadmin init >/dev/null
said=$(inside /usr/bin/qmxadmin check --quiet 2>&1) || fail "With the shipped settings qmxadmin check finds: $said"
[ -z "$said" ] || fail "With the shipped settings qmxadmin check prints: $said"
in_root --install "${packages[0]}"
grep -q '^QMX_CONNECTION=' "$settings" || fail "An upgrade takes the settings away"
[ "$(stat --format=%a "$settings")" = 640 ] || fail "An upgrade opens the settings to others"

# The example of the Java bridge's page, compiled and put into a folder as the page has it.
if [ -n "$java" ]; then
  example=$root/usr/share/doc/qmxdatacopy-java/examples/java
  javac --release 11 -Xlint:-options -d "$work/classes" "$example"/ServiceTypes/*.java
  mkdir "$root/opt"
  jar cf "$root/opt/service-types.jar" -C "$work/classes" .
  cp "$example/service_types_java.component" "$root/opt"
  ln -s "$(dpkg-deb --fsys-tarfile "$java" | tar --list | sed -n 's|^[.]\(/.*/qmx_java.so\)$|\1|p')" "$root/opt"
  variables+=(QMX_COMPONENTS=/opt)
  inside /usr/bin/qmxadmin components >"$work/components" 2>"$work/said" || fail "$(cat "$work/components" "$work/said")"  # without /proc a JVM warns
  grep -q '^  JVM: /usr/lib/jvm/default-java/' "$work/components" || fail "No JVM was started: $(cat "$work/components")"
  inside /usr/bin/qmxdatacopy "$local_database,,tsmdm030,/var/log/qmx,orvan,100" 2>"$work/said" ||
    fail "The copy through Java failed: $(cat "$work/said")"
  rows=$(echo "select group_concat(cstp) from tsmdm030;" | sqlite3 "$root/var/lib/qmx/local.db")
  [ "$rows" = INS,PM,REP ] || fail "The service types INS, PM and REP were expected through Java; there are $rows"
fi

# The statements make the same tables as qmxadmin does.
schema=$root/usr/share/qmxdatacopy/schema
sqlite3 "$work/by_hand.db" <"$schema/sqlite.sql"
[ "$(sqlite3 "$work/by_hand.db" .schema)" = "$(sqlite3 "$root/var/lib/qmx/local.db" .schema)" ] ||
  fail "The tables of $schema/sqlite.sql are not those of qmxadmin init"
for system in postgresql mariadb; do
  [ "$(grep -c '^create table ' "$schema/$system.sql")" = 19 ] || fail "$schema/$system.sql lacks tables"
done

# The header and the examples suffice to write a component server.
examples=$root/usr/share/doc/qmxdatacopy/examples
gcc -std=c99 -Wall -Werror -fsyntax-only -I"$root/usr/include" "$examples/messages.c"
g++ -std=c++17 -Wall -Werror -fsyntax-only -I"$root/usr/include" "$examples/service_types.cpp"

for page in qmxdatacopy qmxadmin orvan-sandbox; do
  warnings=$(gzip --decompress --stdout "$root/usr/share/man/man1/$page.1.gz" | groff -man -ww -z -Tutf8 -Kutf8 2>&1)
  [ -z "$warnings" ] || fail "$page(1): $warnings"
done

# completes EXPECTED WORD...: what bash offers for the last word.
completes() {
  local expected=$1 offered
  shift
  offered=$(bash --noprofile --norc -c '
    source "$1/usr/share/bash-completion/completions/$2"
    shift
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
    "$(complete -p "$1" | sed "s/.*-F \([^ ]*\).*/\1/")" "$1" "${COMP_WORDS[COMP_CWORD]}"
    echo "${COMPREPLY[*]}"' bash "$root" "$@")
  [ "$offered" = "$expected" ] || fail "\"$*\" was completed to \"$offered\", not to \"$expected\""
}
completes init qmxadmin in
completes 'local.db,,tsclm020, local.db,,tsclm024,' qmxdatacopy local.db,,tscl
completes work orvan-sandbox w

# The units, as far as systemd can tell without running them.
if ! command -v systemd-analyze >/dev/null; then
  [ "${CI:-}" != true ] || fail "there is no systemd-analyze, which checks the units"
  echo "NOT RUN: the units were not checked, because there is no systemd-analyze."
else
  said=$(systemd-analyze verify --root="$root" --man=no --recursive-errors=no \
    "$root"/usr/lib/systemd/system/qmxdatacopy{@,-expand,-metrics}.{service,timer} 2>&1) || fail "$said"
  [ -z "$said" ] || fail "$said"
  said=$(systemd-analyze verify --man=no --recursive-errors=no "$examples/qmxdatacopy-failed@.service" 2>&1) || fail "$said"
fi

# All logs are rotated, twice here; two rotations keep the last one as it is. "su" is root's.
log=$root/var/log/qmxdatacopy
sed "s|^/var|$root/var|; /^\tsu /d" "$root/etc/logrotate.d/qmxdatacopy" >"$work/logrotate"
for name in tsmdm030.log QMXDBSynclog.txt evtlog.txt QMXRuns.jsonl; do
  for content in first second; do
    echo "$content" >"$log/$name"
    PATH=$PATH:/usr/sbin logrotate --force --state "$work/rotated" "$work/logrotate" || fail "logrotate failed"
  done
  [ "$(cat "$log/$name.1")" = second ] && [ "$(zcat "$log/$name.2.gz")" = first ] || fail "$name is not rotated: $(ls "$log")"
  rm -f "$log"/*
done

# A removal leaves no timer enabled; a purge leaves nothing but the folder of the database.
units=$root/etc/systemd/system
mkdir -p "$units/timers.target.wants" "$units/qmxdatacopy@tsmdm030.timer.d"
ln -s /lib/systemd/system/qmxdatacopy@.timer "$units/timers.target.wants/qmxdatacopy@tsmdm030.timer"
ln -s /lib/systemd/system/qmxdatacopy-expand.timer "$units/timers.target.wants/qmxdatacopy-expand.timer"
touch "$units/qmxdatacopy@tsmdm030.timer.d/override.conf" "$log/tsmdm030.log" \
  "$root/var/lib/qmxdatacopy/local.db"
in_root --remove ${java:+qmxdatacopy-java} qmxdatacopy-sandbox qmxdatacopy
[ -z "$(ls "$units/timers.target.wants")" ] || fail "A removal leaves timers enabled: $(ls "$units/timers.target.wants")"
for kept in "$units/qmxdatacopy@tsmdm030.timer.d" "$root"/etc/{default,logrotate.d}/qmxdatacopy "$log/tsmdm030.log"; do
  [ -e "$kept" ] || fail "A removal takes $kept away, which is for a purge"
done
in_root --purge ${java:+qmxdatacopy-java} qmxdatacopy-sandbox qmxdatacopy
[ ! -e "$log" ] || fail "A purge leaves the logs"
[ -e "$root/var/lib/qmxdatacopy/local.db" ] || fail "A purge takes a database away"
left=$(find "$root" \( -path "$root/var" -o -path "$root/opt" \) -prune -o \( -name '*qmx*' -o -name 'orvan*' \) -print)
[ -z "$left" ] || fail "The packages left behind: $left"

lintian --no-cfg --fail-on error,warning "${packages[@]}" >"$work/lintian" 2>&1 || fail "$(cat "$work/lintian")"
