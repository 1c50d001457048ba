#!/usr/bin/env bash
# What the libraries let others see: the listed names and nothing of the project's own besides.
set -euo pipefail
cd "$1"

status=0
exported() { nm -D --defined-only "$1" | awk '{ print $3 }' | sed 's/@.*//' | sort -u; }

# expect LIBRARY NAMES...: exactly these C names, beside the run-time library's weak instances.
expect() {
  local library=$1
  shift
  [ -e "$library" ] || { echo "$library is not built"; status=1; return; }
  diff <(printf '%s\n' "$@" | sort -u) <(exported "$library" | grep -vE '^(_Z|__|_init$|_fini$|_edata|_end)') ||
    { echo "^ $library exports other names"; status=1; }
}

entries=$(sed -n 's/^PXN_API [A-Za-z]* PXN_CALL \(Pxn[A-Za-z]*\)(.*/\1/p' pxnc/include/pxnc.h)
[ "$(wc -l <<<"$entries")" -eq 55 ] || { echo "pxnc.h does not declare 55 entries"; status=1; }

expect "$2"/bin/libMivoraKVNPyxen.so CreateGrabberInstance DeleteGrabberInstance \
  MivoraModuleInterface
# shellcheck disable=SC2086
expect "$2"/bin/simulator/Bin/libPxnC.so $entries PxnControl
# shellcheck disable=SC2086
expect "$2"/bin/trace/Bin/libPxnC.so $entries PxnControl PxnLibraryVersion PxnTraceFinish
# shellcheck disable=SC2086
expect "$2"/bin/recording/Bin/libPxnC.so $entries
# shellcheck disable=SC2086
expect "$2"/bin/genicam/Bin/libPxnC.so $entries
exit "$status"
