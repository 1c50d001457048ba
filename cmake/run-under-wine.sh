#!/usr/bin/env bash
# run-under-wine.sh PROGRAM.exe [ARGS]: runs a test program of this build under Wine
#
# Each build directory has Wine prefixes of its own; MIVORA_WINE_BUILD names the one for a program
# from elsewhere. Without MIVORA_WINE_DPI there is no display; with it, the program gets a virtual one
# with so many dots per inch, and a prefix that is never used without a display: Wine has to manage
# windows itself, which it decides when it starts.
set -euo pipefail

wine=/usr/lib/wine/wine64
program=$1
shift
build=${MIVORA_WINE_BUILD:-$(cd "$(dirname "$program")/.." && pwd)}
dpi=${MIVORA_WINE_DPI:-}
export WINEPREFIX=$build/wine${dpi:+-$dpi}
export WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
unset DISPLAY
output=$(mktemp)
display_process=
trap 'rm -f "$output"; [ -z "$display_process" ] || kill "$display_process" 2>/dev/null' EXIT

if [ -n "$dpi" ]; then
  exec {display_pipe}< <(exec Xvfb -displayfd 1 -screen 0 1600x1200x24 -dpi 96 -nolisten tcp 2>/dev/null)
  display_process=$!
  read -r -t 60 number <&"$display_pipe" || { echo "no virtual display could be started" >&2; exit 1; }
  export DISPLAY=:$number
fi

# Of several programs that start at the same time, one makes the prefix.
(
  flock 9
  if [ ! -e "$WINEPREFIX/complete" ]; then
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    "$wine" wineboot -i
    if [ -n "$dpi" ]; then
      "$wine" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f
      "$wine" reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$dpi" /f
    fi
    timeout 60 "$(dirname "$wine")/wineserver64" -w # until the registry is written
    touch "$WINEPREFIX/complete"
  fi
) 9>"$WINEPREFIX.lock" >/dev/null 2>&1 </dev/null || { echo "no Wine prefix in $WINEPREFIX" >&2; exit 1; }

# Wine's own processes outlive the program and keep the files they inherit, so they get no pipe of
# the caller's. The time limit is below CTest's, which would lose the output.
status=0
timeout -k 10 840 "$wine" "$program" "$@" >"$output" 2>&1 </dev/null 9>&- || status=$?
tr -d '\r' <"$output"
# A program that crashes may leave status 0 behind.
if grep -q '^\[==========\] Running ' "$output" && ! grep -q '^\[==========\] .* ran\.' "$output"; then
  echo "$program ended before its last test (status $status)"
  [ "$status" != 0 ] || status=1
fi
exit "$status"
