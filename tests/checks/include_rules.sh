#!/usr/bin/env bash
# Who may include whom, and where the platform may be asked for.
set -euo pipefail
cd "$1"

status=0
complain() {
  printf '%s\n' "$1"
  printf '%s\n' "$2"
  status=1
}

# forbid WHERE PATTERN WHY: no file below WHERE includes what matches PATTERN.
forbid() {
  local found
  found=$(grep -rnE --include='*.h' --include='*.cpp' "^[[:space:]]*#include[[:space:]]*[<\"]($2)" $1 || true)
  [ -z "$found" ] || complain "$3:" "$found"
}

# The module's folders: each may include those before it, and none behind it. So nothing includes a
# dialog: ui/ implements what grabber/grabber_dialogs.h and serial/serial_dialog.h declare.
order=(sdk imaging sync serial acquisition services grabber res ui)
module="($(printf '%s|' "${order[@]}")module)/"

forbid platform "mivora/|host/|pxnc|$module|afx/|apps/" \
  'platform/ stands alone'
forbid host "pxnc|$module|apps/" \
  'the host knows no module and no SDK'
forbid host/include '[a-z_]+>|windows.h' \
  'the interface headers use plain types only'
forbid 'pxnc/include pxnc/skeleton pxnc/simulator pxnc/genicam pxnc/trace pxnc/conformance' \
  "mivora/|$module|apps/|host/" 'an SDK knows no host and no module'
forbid pxnc/recording "mivora/|$module|apps/(common/(session|service|command_line|grabber)|mivora|pyxen)|host/" \
  'an SDK knows no host and no module, and of the applications only how recordings are read'
forbid pxnc/conformance 'pxnc/(skeleton|simulator|genicam|recording)' 'checks know an SDK by its interface alone'
forbid 'pxnc/skeleton pxnc/simulator pxnc/genicam pxnc/recording' 'pxnc/conformance' 'no SDK knows its checks'
forbid 'pxnc/skeleton' 'pxnc/(simulator|genicam|recording)' 'what all SDKs share knows none of them'
forbid pxnc/trace 'pxnc/(conformance|skeleton|simulator|genicam|recording)' 'a trace knows an SDK by its interface alone'
forbid 'pxnc/conformance pxnc/skeleton pxnc/simulator pxnc/genicam pxnc/recording' 'pxnc/trace' 'no SDK knows that it is traced'
forbid pxnc/simulator 'pxnc/(genicam|recording)' 'no SDK knows another'
forbid pxnc/genicam 'pxnc/(simulator|recording)' 'no SDK knows another'
forbid pxnc/recording 'pxnc/(simulator|genicam)' 'no SDK knows another'
for ((at = 0; at < ${#order[@]}; ++at)); do
  later=$(printf '%s|' "${order[@]:at+1}" apps)
  forbid "module/${order[at]}" "(${later%|})/" "module/${order[at]} knows nothing behind it"
done
forbid module/acquisition 'serial/' 'acquisition knows no serial channel'
for folder in module/*/; do
  name=$(basename "$folder")
  [[ " ${order[*]} " == *" $name "* ]] || complain 'a folder of the module without a place:' "$name"
done
forbid module 'CLI/|nlohmann/|pugixml|lodepng|libdeflate|tiff|arv' 'the module uses the standard library alone'
forbid apps/mivora "pxnc|$module" \
  'mivora knows only the host and what all programs share'

found=$(grep -rnE --include='*.h' --include='*.cpp' '^[[:space:]]*#[[:space:]]*(if|ifdef|ifndef|elif).*(_WIN32|__linux__|__unix__)' \
  host module apps tests pxnc/conformance pxnc/simulator pxnc/skeleton pxnc/genicam pxnc/trace pxnc/recording bench fuzz examples 2>/dev/null || true)
[ -z "$found" ] || complain 'the platform is asked for only in platform/ and afx/:' "$found"
exit "$status"
