#!/usr/bin/env bash
# Compiles every interface header by itself for the Microsoft target, and compares the tables that
# Clang lays out for its ABI with the slot numbers that stand in the headers.
set -euo pipefail
cd "$1"

flags=(-target x86_64-pc-windows-msvc -isystem /usr/share/mingw-w64/include -Wall -Wextra -Werror)
cpp=(clang++ "${flags[@]}" -std=c++20 -isystem tests/checks/msvc_afx -isystem pxnc/include
  -Ihost/include -Imodule -I.)

for header in host/include/mivora/*.h pxnc/include/pxnc.h pxnc/simulator/control.h \
  module/grabber/pyxen_grabber.h; do
  "${cpp[@]}" -Wno-pragma-once-outside-header -fsyntax-only -x c++ "$header" ||
    { echo "^ $header does not compile for the Microsoft target"; exit 1; }
done
# The camera SDK's interface is C.
clang "${flags[@]}" -std=c11 -Wno-pragma-once-outside-header -fsyntax-only -x c pxnc/include/pxnc.h

layout=$("${cpp[@]}" -Xclang -fdump-vtable-layouts -emit-llvm -S -o /dev/null tests/checks/msvc_layout.cpp 2>&1)

# "NUMBER NAME" of each slot comment, the destructor as "destructor".
expected() {
  awk '/\/\* slot/ { slot = $3; line = $0
         if (line ~ /~/) { print slot, "destructor"; next }
         while (line !~ /\(/) { getline more; line = line more }
         sub(/\(.*/, "", line); sub(/.*[ *]/, "", line); print slot, line }' "$@"
}

# The same from the dump of one class's table; its entry 0 is the type record.
actual() {
  awk -v head="VFTable for $1" 'index($0, head) == 1 { on = 1; next } on && /^$/ { exit }
       on && $2 == "|" && $1 > 0 { line = $0
         if (line ~ /destructor|~/) { print $1 - 1, "destructor"; next }
         sub(/\(.*/, "", line); sub(/.*::/, "", line); print $1 - 1, line }' <<<"$layout"
}

status=0
compare() { # compare CLASS-IN-DUMP COUNT HEADER...
  local class=$1 count=$2 want have
  shift 2
  want=$(expected "$@")
  have=$(actual "$class")
  if [ "$(wc -l <<<"$want")" -ne "$count" ]; then
    echo "$*: $(wc -l <<<"$want") numbered slots, expected $count"
    status=1
  fi
  diff <(echo "$want") <(echo "$have") || { echo "^ $class differs from $*"; status=1; }
}

compare "'CMivoraGrabber' in 'CPyxenGrabber' in 'GrabberProbe'" 115 \
  host/include/mivora/grabber.h module/grabber/pyxen_grabber.h
compare "'CMivoraCamera' in 'CameraProbe'" 5 host/include/mivora/camera.h
compare "'CMivoraGfxMode' in 'GfxModeProbe'" 12 host/include/mivora/gfx_mode.h
compare "'CCmdChannel' in 'ChannelProbe'" 16 host/include/mivora/cmd_channel.h
exit "$status"
