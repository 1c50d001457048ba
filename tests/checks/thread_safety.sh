#!/usr/bin/env bash
# Clang's analysis of the locking rules, and its warnings, over everything that is compiled here.
set -euo pipefail
cd "$1"
third_party=build/third_party
aravis=$(pkg-config --cflags aravis-0.8 | sed 's/-I/-isystem /g')
git ls-files -co --exclude-standard 'host/*.cpp' 'module/*.cpp' 'platform/*.cpp' 'pxnc/*.cpp' 'apps/*.cpp' |
  grep -v '/win32/' |
  xargs -P 2 -n 1 clang++ -std=c++20 -fsyntax-only -Wall -Wextra -Wconversion -Wshadow \
    -Wthread-safety -Werror -I. -Imodule -Ihost/include -Ipxnc/include \
    -isystem "$third_party/pugixml/src" -isystem "$third_party/lodepng" $aravis -DPXNC_BUILD
