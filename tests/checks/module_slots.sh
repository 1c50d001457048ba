#!/usr/bin/env bash
# Reads the grabber's table of virtual operations out of the built module and compares it, number by
# number and name by name, with slots/grabber.txt; the signatures there are compared by
# msvc_layout.sh. The destructor takes two entries here.
set -euo pipefail
cd "$1"
module=$2/bin/libMivoraKVNPyxen.so
[ -e "$module" ] || { echo "$module is not built"; exit 1; }

table=$(nm "$module" | awk '$3 == "_ZTV20CMivoraKVNPyxenClass" { print $1 }')
[ -n "$table" ] || { echo "no table of CMivoraKVNPyxenClass in $module"; exit 1; }

# What stands at each entry: a relocation against a host symbol, or the address of the module's own.
entries() {
  {
    nm -C "$module" | sed -n 's/^0*\([0-9a-f]*\) [tTwW] /name \1 /p'
    readelf -rW "$module" | c++filt | awk '/R_X86_64_RELATIVE/ { print "own", $1, $4 }
      /R_X86_64_64/ { at = $1; $1 = $2 = $3 = $4 = ""; print "symbol", at, $0 }'
  } | awk -v table="$table" '
    function number(hex,    i, value) {
      value = 0
      for (i = 1; i <= length(hex); i++) value = value * 16 + index("0123456789abcdef", substr(hex, i, 1)) - 1
      return value
    }
    $1 == "name" { at = $2; $1 = $2 = ""; if (!(at in names)) names[at] = $0 }
    $1 == "own" { own[number($2)] = $3 }
    $1 == "symbol" { at = number($2); $1 = $2 = ""; symbol[at] = $0 }
    END {
      start = number(table) + 16
      for (entry = 0; entry < 116; entry++) {
        at = start + 8 * entry
        if (at in own) text = names[own[at]]
        else text = symbol[at]
        if (text ~ /~/) { name = "destructor" }
        else { name = text; sub(/\(.*/, "", name); sub(/.*::/, "", name) }
        owner = text ~ /CMivoraKVNPyxenClass/ ? "module" : text ~ /CMivoraGrabber/ ? "host" : "nobody"
        if (entry == 100) continue
        slot = entry
        if (entry > 100) slot = entry - 1
        print slot, owner, name
      }
    }'
}

listed() { # number, who defines the operation, name
  awk '!/^#/ { sub(/\(.*/, ""); print $1, $2, $NF }' tests/checks/slots/grabber.txt
}
diff <(listed) <(entries) && echo "115 slots as listed"
