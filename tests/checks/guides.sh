#!/usr/bin/env bash
# The C++ of each guide, its blocks one after the other, is a whole source that compiles and does what
# the page says: the host grabs with the module, programs grab from the module, and the camera SDK
# keeps the rules. The C++ of every other page may stand in a function that has a grabber
# and its services.
set -euo pipefail
cd "$1"

build=$2
output=$2/guides
rm -rf "$output"
mkdir -p "$output"
cache() { sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt"; }
sanitize=$(cache MIVORA_SANITIZE)
common=(-std=c++20 -O1 -Wall -Wextra -Wshadow -Werror
  -Ihost/include -Ipxnc/include)
[ -z "$sanitize" ] || common+=("-fsanitize=$sanitize" -fno-sanitize-recover=all)

# compile PAGE OUTPUT ARGS...: the blocks of docs/PAGE; messages have the lines of the page.
compile() {
  local page=docs/$1 result=$output/$2
  shift 2
  awk -v page="$page" '
    /^```cpp$/ { inside = 1; printf "#line %d \"%s\"\n", NR + 1, page; next }
    /^```$/ { inside = 0 }
    inside' "$page" >"$result.cpp"
  [ "$(wc -l <"$result.cpp")" -ge 50 ] || { echo "$page has no source"; exit 1; }
  "$(cache CMAKE_CXX_COMPILER)" "${common[@]}" "$result.cpp" -o "$result" "$@" \
    -Wl,-rpath,"$build/bin" || { echo "$page does not compile"; exit 1; }
}

# expect WHAT TEXTS COMMAND...: the command succeeds and prints each of the texts, one a line.
expect() {
  local what=$1 texts=$2 text printed
  shift 2
  printed=$("$@" 2>&1) || { printf '%s\n%s failed\n' "$printed" "$what"; exit 1; }
  while IFS= read -r text; do
    grep -qE -- "$text" <<<"$printed" || { printf '%s\n%s: no "%s"\n' "$printed" "$what" "$text"; exit 1; }
  done <<<"$texts"
}

compile writing-a-host.md host -L"$build/bin" -lMivora -pthread &
host=$!
compile writing-a-module.md libGuideModule.so -shared -fPIC -fvisibility=hidden -L"$build/bin" -lMivora -pthread &
module=$!
mkdir -p "$output/grey/Bin"
mapfile -t skeleton < <(find "$build/pxnc/skeleton" -name '*.o')
compile writing-a-camera-sdk.md grey/Bin/libPxnC.so -I. -shared -fPIC "${skeleton[@]}" \
  "$build/platform/libplatform.a" -lpugixml -ldl -pthread \
  -Wl,-z,nodelete &
sdk=$!
wait "$host"
wait "$module"
wait "$sdk"

pages=0
for page in docs/*.md; do
  [[ $page != docs/writing-a-*.md ]] && grep -q '^```cpp$' "$page" || continue
  pages=$((pages + 1))
  source=$output/$(basename "$page" .md).cpp
  awk -v page="$page" '
    /^```cpp$/ { inside = 1; next }
    /^```$/ { inside = 0 }
    BEGIN { print "#include <mivora/grabber.h>\n#include <mivora/module_services.h>\n#include <cstdio>" }
    inside && /^#include / { print; next }
    inside { lines = lines sprintf("#line %d \"%s\"\n%s\n", NR, page, $0) }
    END {
      page = "void Page(CMivoraGrabber* grabber, IMivoraModuleServices* services)"
      printf "%s;\n%s {\n(void)grabber, (void)services;\n{\n%s}\n}\n", page, page, lines
    }' "$page" >"$source"
  "$(cache CMAKE_CXX_COMPILER)" "${common[@]}" -Wno-shadow -Wno-unused-variable -fsyntax-only "$source" || {
    echo "the code of $page does not compile"
    exit 1
  }
done
[ "$pages" -ge 1 ] || { echo "no other page has C++"; exit 1; }

expect "the host" '^5000\.0 us$
^frame [0-9]+, 640 x 480, [1-9][0-9]* received$
^20 images of 640 x 480, [0-9]+ lost$' \
  env PYXEN_HOME="$build/bin/simulator" "$output/host" "$build/bin/libMivoraKVNPyxen.so"

guide=("$build/bin/mivora" --module "$output/libGuideModule.so")
expect "cameras of the module" '"name":"Test picture"' "${guide[@]}" cameras --json
expect "grabbing from the module" '"frames":30,' "${guide[@]}" grab --frames 30 --json
expect "a single image of the module" '' "${guide[@]}" snap -o "$output/picture.pgm"
[ "$(head -c 2 "$output/picture.pgm")" = P5 ] || { echo "the module's image is none"; exit 1; }
# Codes of calls at the wrong time, and the number of images after a wait for five, which may be more.
lines='Init\nOpenActCamera\nSetActCameraIndex 0\nSnap 1\nOpenActCamera\nSnap 1\nPrepareFrameBuffers 2\n'
lines+='Snap 6\nSnap 3\nSnap 2\nWaitFrames 1\nWaitIdle\nSnap 1\nSnap 1\nWaitFrames 5\nStopSnap\nGetAcquisitionState\n'
# shellcheck disable=SC2059
printed=$(printf "$lines" | "${guide[@]}" shell | sed 's/.* = //' | tr '\n' ' ')
[[ $printed =~ ^'0 8 0 10 0 12 0 14 0 0 1 0 0 3 '[0-9]+' 0 0 '$ ]] || {
  echo "the module's codes are $printed"
  exit 1
}

expect "the rules of a camera SDK" '^[5-9][0-9] passed, 0 failed, ' "$build/bin/pyxen-tool" --sdk "$output/grey" sdk-check
expect "grabbing from the camera SDK" '"frames":50,' "$build/bin/mivora" --sdk "$output/grey" grab --frames 50 --json
