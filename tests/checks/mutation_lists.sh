#!/usr/bin/env bash
# Every mutation in tests/mutations can be applied: the lines that it changes are still there.
set -euo pipefail
mkdir -p "$2/mutation-lists"
bash "$1/tests/mutations/mutate.sh" "$2/mutation-lists" --check
