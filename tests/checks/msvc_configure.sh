#!/usr/bin/env bash
# Configures the whole project for the Microsoft target. Clang stands in for Visual C++, whose
# options it takes; there is no Windows SDK here, so nothing is compiled.
set -euo pipefail
cd "$1"

build=$2/msvc
rm -rf "$build"
tools=$(dirname "$(readlink -f "$(command -v clang++)")")
log=$build.log
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_SYSTEM_NAME=Windows \
  -DCMAKE_SYSTEM_PROCESSOR=AMD64 \
  -DCMAKE_C_COMPILER="$tools/clang-cl" -DCMAKE_CXX_COMPILER="$tools/clang-cl" \
  -DCMAKE_C_COMPILER_TARGET=x86_64-pc-windows-msvc \
  -DCMAKE_CXX_COMPILER_TARGET=x86_64-pc-windows-msvc \
  -DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY -DMIVORA_WERROR=ON \
  -DCMAKE_FIND_ROOT_PATH="$build" -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=ONLY \
  -DCMAKE_FIND_ROOT_PATH_MODE_LIBRARY=ONLY -DCMAKE_FIND_ROOT_PATH_MODE_INCLUDE=ONLY \
  -DCMAKE_LINKER="$tools/lld-link" -DCMAKE_AR="$tools/llvm-lib" -DCMAKE_MT="$tools/llvm-mt" \
  -DCMAKE_RC_COMPILER="$tools/llvm-rc" >"$log" 2>&1 || { cat "$log"; exit 1; }

status=0
commands=$(cat "$build/build.ninja")
expect() { # expect TEXT WHY
  grep -qF -- "$1" <<<"$commands" || { echo "build.ninja has no \"$1\": $2"; status=1; }
}
refuse() {
  ! grep -qF -- "$1" <<<"$commands" || { echo "build.ninja has \"$1\": $2"; status=1; }
}
for product in Mivora.dll MivoraKVNPyxen.dll mivora.exe pyxen-tool.exe simulator/Bin/PxnC.dll; do
  expect "bin/$product" "a product is not built"
done
expect "/W4" "warnings"
expect "/WX" "warnings are errors"
expect "std:c++20" "the language"
refuse "-Wall" "an option of other compilers"
refuse "__attribute__" "a word of other compilers"
refuse "-static" "an option of other linkers"
exit "$status"
