#!/usr/bin/env bash
# Installs the build into a new directory, moves that, uses what is there as others do, and takes it
# away again.
set -euo pipefail
cd "$1"

work=$2/installation
prefix=$work/prefix
rm -rf "$work" "$2/installed_files.txt"
mkdir -p "$work"
cmake --install "$2" --prefix "$work/first" >"$work/install.log" 2>&1 || { cat "$work/install.log"; exit 1; }
mv "$work/first" "$prefix"

module=$(find "$prefix" -name libMivoraKVNPyxen.so)
library=$(find "$prefix" -name libMivora.so.1)
if readelf -d "$prefix/bin/mivora" "$module" | grep PATH | grep -F "$2"; then
  echo "^ an installed file refers to the build directory"
  exit 1
fi
if grep -rnF "$2" "$prefix" --include='*.cmake' --include='*.pc'; then
  echo "^ an installed package refers to the build directory"
  exit 1
fi
readelf -d "$library" | grep -qF 'Library soname: [libMivora.so.1]' || {
  echo "$library has no versioned name"
  exit 1
}

cache() { sed -n "s/^$1:[A-Z]*=//p" "$2/CMakeCache.txt"; }
sanitize=$(cache MIVORA_SANITIZE "$2")
flags=${sanitize:+-fsanitize=$sanitize}
export CCACHE_BASEDIR=$work
bash tests/checks/use_package.sh . "$prefix" "$work/use" \
  -DCMAKE_C_COMPILER="$(cache CMAKE_C_COMPILER "$2")" \
  -DCMAKE_CXX_COMPILER="$(cache CMAKE_CXX_COMPILER "$2")" \
  -DCMAKE_CXX_COMPILER_LAUNCHER="$(cache CCACHE_PROGRAM "$2" | grep -v NOTFOUND || true)" \
  -DCMAKE_CXX_FLAGS="$flags -Wall -Wextra -Wconversion -Wshadow -Wno-sign-conversion -Werror"
"$prefix/bin/mivora" --sdk genicam cameras >/dev/null # no camera is fine, no library is not

for page in share/man/man1/{mivora,pyxen-tool}.1 share/bash-completion/completions/{mivora,pyxen-tool}; do
  [ -s "$prefix/$page" ] || { echo "there is no $page"; exit 1; }
done

# Every header of the skeleton finds what it includes.
find "$prefix/include/pxnc-skeleton" -name '*.h' -printf '#include <%P>\n' |
  "$(cache CMAKE_CXX_COMPILER "$2")" -fsyntax-only -std=c++20 -I"$prefix/include" \
    -I"$prefix/include/pxnc-skeleton" -x c++ -

# Without CMake, and with symbols hidden.
pkg() { PKG_CONFIG_PATH=$(dirname "$library")/pkgconfig pkg-config "$@"; }
# shellcheck disable=SC2046
"$(cache CMAKE_CXX_COMPILER "$2")" -std=c++20 $flags -fvisibility=hidden examples/grab/main.cpp \
  $(pkg --cflags --libs mivora pxnc) -Wl,-rpath,"$(dirname "$library")" -o "$work/grab"
PYXEN_HOME=$(pkg --variable=moduledir mivora)/simulator "$work/grab" "$module" |
  grep -q '^image 100 begins with ' || { echo "a host that pkg-config helped to build takes no images"; exit 1; }

# In place again; what others have put into the same directories stays.
mv "$prefix" "$work/first"
mkdir -p "$work/first/lib/mivora/other/Bin"
touch "$work/first/lib/mivora/other/Bin/kept"
cmake -DBUILD_DIRECTORY="$2" -P cmake/uninstall.cmake >"$work/uninstall.log" 2>&1 ||
  { cat "$work/uninstall.log"; exit 1; }
left=$(cd "$work/first" && find . -type f -o -type l -o -path '*mivora*' | sort)
[ "$left" = "$(printf './lib/mivora\n./lib/mivora/other\n./lib/mivora/other/Bin\n./lib/mivora/other/Bin/kept')" ] || {
  printf 'uninstalling leaves\n%s\n' "$left"
  exit 1
}
if cmake -DBUILD_DIRECTORY="$2" -P cmake/uninstall.cmake >"$work/uninstall.log" 2>&1; then
  echo "uninstalling what is not installed succeeds"
  exit 1
fi
