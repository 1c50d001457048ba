#!/usr/bin/env bash
# Configures the project for the Microsoft target with MIVORA_REAL_MFC=ON, and compiles the sources
# with windows and their tests against declarations shaped like the real library (real_mfc/):
# together, as a preset does, and those of the products also each by itself.
set -euo pipefail
cd "$1"
. tests/checks/msvc_target.sh
export INCLUDE="$INCLUDE;$PWD/tests/checks/real_mfc"

build=$2/real_mfc
configure_msvc "$build" -DMIVORA_REAL_MFC=ON -DCMAKE_UNITY_BUILD=ON \
  -DCMAKE_UNITY_BUILD_BATCH_SIZE=10

status=0
complain() {
  echo "$1"
  status=1
}
! grep -qE 'afx\.(lib|dir)' "$build/build.ninja" || complain "the library in afx/ is built or linked"
! grep -qF "$PWD/afx/include" "$build/compile_commands.json" || complain "afx/include is searched"

# Sources with windows are in directories of that name. One list has the groups in which targets of
# the library compile them, the other one the members of these groups.
while read -r command; do
  group=${command##* -- }
  grep -q '^#include ".*/windows/' "$group" || continue
  echo "$command" >&3
  sed -nE "s,^#include \"($PWD/(module/ui|apps/view)/windows/.*)\"$,\1,p" "$group" |
    while read -r source; do echo "${command% -- *} -- $source"; done
done 3>"$build.groups" >"$build.members" \
  < <(compile_commands "$build" | grep -F -- ' -D_AFXDLL ')
for list in "$build.groups" "$build.members"; do
  [ -s "$list" ] || complain "no sources with windows in $list"
  check_syntax <"$list" || complain "^ does not compile for the Microsoft target"
done
exit "$status"
