#!/usr/bin/env bash
# Every source is formatted as .clang-format says.
set -euo pipefail
cd "$1"
git ls-files -co --exclude-standard '*.h' '*.cpp' | xargs -P 2 -n 16 clang-format --dry-run -Werror
