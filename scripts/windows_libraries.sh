#!/usr/bin/env bash
# Builds what the preset "windows" links, into build/windows-libraries: SQLite, GoogleTest, and the folders of the libraries
# that are headers only. All of it is Debian's. Does nothing if a build of the same inputs is there. --packages installs
# missing Debian packages first.
#
# Debian has no SQLite for Windows, so it is compiled from the source package. The upstream archive has to be the one
# below. Debian's own changes to it may be newer than those that this script was written with.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh
[ "${1:-}" != --packages ] || install_packages "${windowsPackages[@]}"

sqliteArchive=sqlite3_3.40.1.orig.tar.xz
sqliteHash=aaa776260ab4dc976db34aa7891819484c8676b5b2783123ebc6301e2ca5d655
compiler=x86_64-w64-mingw32
folder=$PWD/build/windows-libraries
inputs=$(cat scripts/windows_libraries.sh <("$compiler-g++-posix" --version) \
         <(dpkg-query --show googletest libfmt-dev libutfcpp-dev nlohmann-json3-dev libcli11-dev) | sha256sum)
[ "$(cat "$folder/built" 2>/dev/null)" != "$inputs" ] || exit 0
echo "Building SQLite and GoogleTest for Windows"
rm -rf "$folder"
mkdir -p "$folder"/{include,lib,source}
log=$folder/build.log
trap 'status=$?; [ $status -eq 0 ] || tail -n 40 "$log" >&2; exit $status' EXIT
exec 3>&1 >"$log" 2>&1

# source_package NAME: downloads its source package into the current folder, with lists of its own, so that this machine's
# list of sources stays as it is.
source_package() {
  local apt=$PWD/apt options
  mkdir -p "$apt"/{sources,lists/partial,cache}
  for file in /etc/apt/sources.list.d/*.sources; do
    [ ! -e "$file" ] || sed 's/^Types:.*/Types: deb-src/' "$file" >"$apt/sources/$(basename "$file")"
  done
  cat /etc/apt/sources.list /etc/apt/sources.list.d/*.list 2>/dev/null | sed -n 's/^deb /deb-src /p' >"$apt/sources/sources.list" || true
  options=(-o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$apt/sources" -o Dir::State::Lists="$apt/lists"
           -o Dir::Cache="$apt/cache" -o APT::Sandbox::User="$(id -un)")
  apt-get "${options[@]}" update
  apt-get "${options[@]}" source --download-only "$1"
}

cd "$folder/source"
source_package sqlite3
echo "$sqliteHash  $sqliteArchive" | sha256sum --check
dpkg-source --no-check --extract sqlite3_*.dsc sqlite
mkdir amalgamation
(cd amalgamation && ../sqlite/configure --disable-readline && make sqlite3.c sqlite3.h)
# The limits and switches of Debian's library that the program meets.
"$compiler-gcc-posix" -O2 -DSQLITE_THREADSAFE=1 -DSQLITE_USE_URI=1 -DSQLITE_ENABLE_COLUMN_METADATA \
  -DSQLITE_MAX_VARIABLE_NUMBER=250000 -DSQLITE_LIKE_DOESNT_MATCH_BLOBS -c amalgamation/sqlite3.c -o sqlite3.o
"$compiler-ar" rcs "$folder/lib/libsqlite3.a" sqlite3.o
cp amalgamation/sqlite3.h "$folder/include"

cmake -S /usr/src/googletest -B googletest -G Ninja -DCMAKE_TOOLCHAIN_FILE="$PWD/../../../cmake/mingw_toolchain.cmake" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$folder" -DCMAKE_INSTALL_LIBDIR=lib -DCMAKE_CXX_STANDARD=20
cmake --build googletest
cmake --install googletest

# Only these folders: the rest of /usr/include is of this machine's own C library.
cp -r /usr/include/{fmt,nlohmann,CLI} /usr/include/utf8cpp/utf8 /usr/include/utf8cpp/utf8.h "$folder/include"

rm -rf "$folder/source"
echo "$inputs" >"$folder/built"
