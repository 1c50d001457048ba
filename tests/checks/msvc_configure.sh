#!/usr/bin/env bash
# Configures the whole project for the Microsoft target, and compiles all sources of the products,
# together as a preset does.
set -euo pipefail
cd "$1"
. tests/checks/msvc_target.sh

build=$2/msvc
configure_msvc "$build" -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=10

status=0
# libtiff sets options of its own for the compiler that stands in for the Microsoft one here.
commands=$(awk -v RS= '!/^(#[^\n]*\n)*build tiff\//' "$build/build.ninja")
expect() { # expect TEXT WHY
  grep -qF -- "$1" <<<"$commands" || { echo "build.ninja has no \"$1\": $2"; status=1; }
}
refuse() {
  ! grep -qF -- "$1" <<<"$commands" || { echo "build.ninja has \"$1\": $2"; status=1; }
}
for product in Mivora.dll MivoraKVNPyxen.dll mivora.exe pyxen-tool.exe mivora-view.exe \
  simulator/Bin/PxnC.dll; do
  expect "bin/$product" "a product is not built"
done
expect "/W4" "warnings"
expect "/WX" "warnings are errors"
expect "std:c++20" "the language"
expect "/ENTRY:mainCRTStartup" "the viewer has windows and a function main"
refuse "-Wall" "an option of other compilers"
refuse "__attribute__" "a word of other compilers"
refuse " -static" "an option of other linkers"

# The one source that is made: nothing else can be built without the Microsoft headers.
ninja -C "$build" -t commands apps/embedded_files.cpp | tail -n 1 | bash
compile_commands "$build" |
  grep -E ' /Fo(platform|host|pxnc|afx|module|apps)/' >"$build.commands"
check_syntax <"$build.commands" || { echo "^ does not compile for the Microsoft target"; status=1; }
exit "$status"
