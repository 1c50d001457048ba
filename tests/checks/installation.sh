#!/usr/bin/env bash
# Installs the build into a new directory, runs the programs there, and builds a project that knows
# nothing but that directory.
set -euo pipefail
cd "$1"

prefix=$2/installation
rm -rf "$prefix" "$2/consumer"
cmake --install "$2" --prefix "$prefix" >"$prefix.log" 2>&1 || { cat "$prefix.log"; exit 1; }

# The directories of the libraries depend on the system's habits.
module=$(find "$prefix" -name libMivoraKVNPyxen.so)
packages=$(find "$prefix" -name MivoraConfig.cmake)
for file in "$prefix/bin/pyxen-tool" "$module" "$packages" "$prefix/include/mivora/grabber.h" \
  "$prefix"/include/pxnc{,_entries,_types}.h; do
  [ -e "$file" ] || { echo "$file is not installed"; exit 1; }
done
if readelf -d "$prefix/bin/mivora" "$module" | grep PATH | grep -F "$2"; then
  echo "^ an installed file refers to the build directory"
  exit 1
fi

unset PYXEN_HOME
cameras=$("$prefix/bin/mivora" cameras --json)
[ "$(grep -o '"index"' <<<"$cameras" | wc -l)" -eq 3 ] || {
  echo "the installed program does not list the simulator's three cameras: $cameras"
  exit 1
}
"$prefix/bin/mivora" --sdk genicam cameras >/dev/null # no camera is fine, no library is not

"$prefix/bin/mivora" --trace-sdk "$2/installed.trace" cameras >/dev/null
"$prefix/bin/pyxen-tool" trace "$2/installed.trace" --call PxnCamerasList | grep -qF 'found=3' || {
  echo "the installed program traces no list of cameras"
  exit 1
}

cache() { sed -n "s/^$1:[A-Z]*=//p" "$2/CMakeCache.txt"; }
sanitize=$(cache MIVORA_SANITIZE "$2")
cmake -S tests/checks/consumer -B "$2/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_C_COMPILER="$(cache CMAKE_C_COMPILER "$2")" \
  -DCMAKE_CXX_COMPILER="$(cache CMAKE_CXX_COMPILER "$2")" \
  -DCMAKE_CXX_FLAGS="${sanitize:+-fsanitize=$sanitize}" >"$prefix.log" 2>&1 &&
  cmake --build "$2/consumer" >>"$prefix.log" 2>&1 || { cat "$prefix.log"; exit 1; }
name=$("$2/consumer/host" "$module")
[ -n "$name" ] || { echo "the host that was built against the installation printed no name"; exit 1; }
"$2/consumer/sdk_user"
