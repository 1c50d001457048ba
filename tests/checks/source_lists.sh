#!/usr/bin/env bash
# Every source stands in the list of a CMakeLists.txt: none is left out of the build unnoticed.
set -euo pipefail
cd "$1"

status=0
while read -r source; do
  directory=$(dirname "$source")
  name=$(basename "$source")
  found=
  while :; do # in the list of its own directory or of one above it, by its path from there
    if [ -e "$directory/CMakeLists.txt" ] &&
      grep -qE "(^|[[:space:]/(\"])${name//./\\.}([[:space:])\"]|\$)" "$directory/CMakeLists.txt"; then
      found=1
      break
    fi
    [ "$directory" != . ] || break
    name=$(basename "$directory")/$name
    directory=$(dirname "$directory")
  done
  if [ -z "$found" ]; then
    echo "no CMakeLists.txt lists $source"
    status=1
  fi
done < <(git ls-files -co --exclude-standard '*.cpp' ':!tests/checks')
exit "$status"
