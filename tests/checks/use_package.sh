#!/usr/bin/env bash
# use_package.sh SOURCES PREFIX WORK [CMAKE ARGUMENTS]: uses an installed package as others do
#
# Runs its programs, and builds projects that know nothing but PREFIX: those of tests/checks/consumer
# and the examples, which are taken from the package. RUN is the command that runs a program, empty
# for programs of this machine.
set -euo pipefail
sources=$1
prefix=$2
work=$3
shift 3

fail() {
  echo "$prefix: $1"
  exit 1
}
run() { # run PROGRAM ARGUMENTS...
  local program=$1
  shift
  [ ! -e "$program.exe" ] || program=$program.exe
  # shellcheck disable=SC2086
  ${RUN:-} "$program" "$@"
}
build() { # build NAME DIRECTORY
  {
    cmake -S "$2" -B "$work/$1" -G Ninja "${arguments[@]}" && cmake --build "$work/$1"
  } >"$work/$1.log" 2>&1 || {
    cat "$work/$1.log"
    fail "$1 cannot be built against it"
  }
}
expect() { # expect WHAT TEXT OUTPUT
  [[ $3 == *"$2"* ]] || fail "$1 printed no \"$2\": $3"
}

# The directories of the libraries depend on the system's habits.
packages=$(find "$prefix" -name MivoraConfig.cmake -printf '%h\n')
[ -e "$packages/../PxnC/PxnCConfig.cmake" ] || fail "there are no packages for CMake"
if [ -e "$prefix/bin/mivora.exe" ]; then
  module=$prefix/bin/MivoraKVNPyxen.dll
  picture=module/TestPicture.dll
else
  module=$(find "$prefix" -name libMivoraKVNPyxen.so)
  picture=module/libTestPicture.so
fi
arguments=("-DMivora_DIR=$packages" "-DPxnC_DIR=$(dirname "$packages")/PxnC" "$@")
examples=$prefix/share/doc/mivora/examples
for file in "$module" "$prefix/include/mivora/grabber.h" "$prefix"/include/pxnc{,_entries,_types}.h \
  "$examples/grab/main.cpp"; do
  [ -e "$file" ] || fail "$file is not installed"
done
mkdir -p "$work"

unset PYXEN_HOME
cameras=$(run "$prefix/bin/mivora" cameras --json)
[ "$(grep -o '"index"' <<<"$cameras" | wc -l)" -eq 3 ] ||
  fail "the program does not list the simulator's three cameras: $cameras"
run "$prefix/bin/mivora" --trace-sdk "$work/sdk.trace" cameras >/dev/null
expect 'pyxen-tool trace' 'found=3' \
  "$(run "$prefix/bin/pyxen-tool" trace "$work/sdk.trace" --call PxnCamerasList)"

build consumer "$sources/tests/checks/consumer"
[ -n "$(run "$work/consumer/host" "$module")" ] || fail "the host that was built against it printed no name"
run "$work/consumer/sdk_user" || fail "the user of an SDK that was built against it has failed"

for function in mivora_add_module pxnc_add_sdk; do
  ! cmake "-DWRONG=$function" "$work/consumer" >"$work/wrong.log" 2>&1 || fail "$function takes wrong arguments"
  expect "$function with wrong arguments" "$function(NAME SOURCES FILE..." "$(<"$work/wrong.log")"
done

build grab "$examples/grab"
expect 'examples/grab' 'image 100 begins with ' \
  "$(PYXEN_HOME=$(dirname "$module")/simulator run "$work/grab/grab" "$module")"
! run "$work/grab/grab" "$work/none" >/dev/null 2>&1 || fail "examples/grab succeeds without a module"

build live "$examples/live-settings"
live=$(PYXEN_HOME=$(dirname "$module")/simulator run "$work/live/live-settings" "$module" ExposureTime 2000 1e12 5000)
for text in 'Camera/ExposureTime, ' 'set to 2000' ' takes 10 to ' 'set to 5000' '0 damaged frames'; do
  expect 'examples/live-settings' "$text" "$live"
done
[ "$(grep -cE '^frame [0-9]+ at [0-9.]+ ms, [0-9]+ x [0-9]+ pixels' <<<"$live")" -eq 40 ] ||
  fail "examples/live-settings did not take ten images before and after each value: $live"

build module "$examples/module"
! run "$work/live/live-settings" "$work/$picture" ExposureTime 1 >"$work/live.log" 2>&1 ||
  fail "examples/live-settings succeeds with a module without services"
expect 'examples/live-settings with a module without services' 'offers no services' "$(<"$work/live.log")"
cmake --install "$work/module" --prefix "$work/installed" >/dev/null
[ -n "$(find "$work/installed" -path "*$(basename "$(dirname "$module")")/$(basename "$picture")")" ] ||
  fail "examples/module is not installed where modules are"
grabbed=$(run "$prefix/bin/mivora" --module "$work/$picture" grab --frames 20 --json)
expect 'mivora grab with examples/module' '{"schema":1,"frames":20,"errors":0,' "$grabbed"
expect 'mivora grab with examples/module' '"closed":true' "$grabbed"
for mode in 2 3; do
  run "$prefix/bin/mivora" --module "$work/$picture" snap --mode "$mode" -o "$work/mode$mode.pgm"
done
# The first picture of each snap: 640 x 480 pixels, a slope that begins with 0.
for mode in 2 3; do
  [ "$(head -c 3 <(tail -c 307200 "$work/mode$mode.pgm") | od -An -tu1 | tr -s ' ')" = ' 0 1 2' ] ||
    fail "mivora snap --mode $mode took another picture of examples/module"
done

build sdk "$examples/sdk"
run "$prefix/bin/pyxen-tool" --sdk "$work/sdk/test_camera" sdk-check >"$work/sdk-check.log" 2>&1 || {
  cat "$work/sdk-check.log"
  fail "examples/sdk breaks rules"
}
checked=$(sed -n 's/^\([0-9]*\) passed, 0 failed.*/\1/p' "$work/sdk-check.log")
[ "${checked:-0}" -ge 90 ] || fail "only ${checked:-none} of the checks could be made on examples/sdk"
expect 'pyxen-tool version of examples/sdk' '(1.0.0.1)' \
  "$(run "$prefix/bin/mivora" --sdk "$work/sdk/test_camera" info)"
expect 'mivora grab with examples/sdk' '{"schema":1,"frames":20,"errors":0,' \
  "$(run "$prefix/bin/mivora" --sdk "$work/sdk/test_camera" grab --frames 20 --json)"
