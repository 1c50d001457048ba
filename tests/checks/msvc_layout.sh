#!/usr/bin/env bash
# Compiles every interface header by itself for the Microsoft target, and compares the tables of
# virtual operations that Clang lays out for its ABI with the lists in slots/: number, who defines
# the operation, and signature. The lists are written by hand: whatever changes one of them changes
# the interface between host and module.
set -euo pipefail
cd "$1"
. tests/checks/msvc_target.sh
export INCLUDE="$INCLUDE;$PWD/tests/checks/real_mfc"

target=(-target x86_64-pc-windows-msvc "${mingw_options[@]}" -Wall -Wextra -Werror)
cpp=(clang++ "${target[@]}" -std=c++20 -DUNICODE -D_UNICODE -D_DLL -D_AFXDLL -Ipxnc/include
  -Ihost/include -Imodule -I.)

for header in host/include/mivora/*.h pxnc/include/pxnc*.h pxnc/simulator/control.h \
  module/grabber/pyxen_grabber.h; do
  "${cpp[@]}" -Wno-pragma-once-outside-header -fsyntax-only -x c++ "$header" ||
    { echo "^ $header does not compile for the Microsoft target"; exit 1; }
done
# The camera SDK's interface is C.
clang "${target[@]}" -std=c11 -Wno-pragma-once-outside-header -fsyntax-only -x c pxnc/include/pxnc.h
# Sizes, offsets and types are asserted there.
"${cpp[@]}" -fsyntax-only tests/checks/msvc_layout.cpp

# The dump of one class's table in the form of the lists. Its entry 0 is the type record; who
# defines an operation follows from the class that Clang names before it.
table() { # table CLASS-IN-DUMP OWNER <DUMP
  awk -v head="VFTable for $1 (" -v owner="$2" '
    index($0, head) == 1 { on = 1; next }
    on && /^$/ { exit }
    on && $2 == "|" && $1 > 0 {
      slot = $1 - 1
      sub(/^ *[0-9]+ \| /, "")
      sub(/ \[.*/, "")                       # [pure], [scalar deleting]
      sub(/pyxen::ModuleServices::/, "ModuleServices::")
      match($0, /[A-Za-z]+::~?[A-Za-z0-9]+\(/)
      class = substr($0, RSTART, index(substr($0, RSTART), "::") - 1)
      from = class ~ /^(CMivoraGrabber|CMivoraCamera|CMivoraGfxMode|CCmdChannel)$/ ? "host" : owner
      $0 = substr($0, 1, RSTART - 1) substr($0, RSTART + length(class) + 2)
      if (/^~/) $0 = "destructor"
      print slot, from, $0
    }' | sed -E 's/ ([*&]+)([A-Za-z])/\1 \2/; s/ ([*&]+)/\1/g; s/std::(u?int[0-9]+_t)/\1/g' # "char *Name(int *)"
}

status=0
compare() { # compare LIST SOURCE CLASS-IN-DUMP OWNER
  local list=tests/checks/slots/$1.txt dump
  dump=$("${cpp[@]}" -Xclang -fdump-vtable-layouts -emit-llvm -S -o /dev/null "$2" 2>&1) ||
    { echo "$dump"; echo "^ $2 does not compile for the Microsoft target"; status=1; return; }
  diff <(grep -v '^#' "$list") <(table "$3" "$4" <<<"$dump") ||
    { echo "^ $3 in $2 differs from $list"; status=1; }
}

compare grabber module/grabber/mivora_kvn_pyxen_class.cpp \
  "'CMivoraGrabber' in 'CPyxenGrabber' in 'CMivoraKVNPyxenClass'" module
compare camera module/grabber/mivora_camera_kvn_pyxen.cpp \
  "'CMivoraCamera' in 'CMivoraCameraKVNPyxen'" module
compare gfx_mode module/grabber/mivora_gfx_mode_kvn_pyxen.cpp \
  "'CMivoraGfxMode' in 'CMivoraGfxModeKVNPyxen'" module
compare cmd_channel module/serial/cmd_kvn_pyxen.cpp "'CCmdChannel' in 'CCmdKVNPyxen'" module
compare cam_cntrl_dialog module/ui/windows/feature_control_dialog.cpp \
  "'ICamCntrlDialog' in 'CCamCntrlDlgBase' in 'CKVNPyxenFeatureCtrlDialog'" module
compare module_services module/services/module_services.cpp \
  "'IMivoraModuleServices' in 'pyxen::ModuleServices'" module
compare log_sink apps/common/log_file.cpp "'ILogSink' in 'LogFile'" application
exit "$status"
