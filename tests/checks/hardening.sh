#!/usr/bin/env bash
# Reads from the built programs and libraries, ELF or PE, what they are hardened with. Before that,
# a program that is built without has to be refused.
set -euo pipefail
source=$1
build=$2

status=0
complain() {
  echo "$1"
  status=1
}
cache() { sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt"; }
work=$build/hardening
mkdir -p "$work"

# lacks_elf FILE: what a program or library for Linux lacks, one a line.
lacks_elf() {
  local headers path entry
  headers=$(readelf -hlWd "$1")
  grep -qE '^  Type: +DYN ' <<<"$headers" || echo "a load address that can change"
  grep -qE '^  GNU_RELRO ' <<<"$headers" || echo "relocations that are read-only afterwards"
  grep -qE '\((FLAGS|FLAGS_1)\).* (BIND_)?NOW' <<<"$headers" || echo "immediate binding"
  grep -qE '^  GNU_STACK .* RW +0x' <<<"$headers" || echo "a stack that is not executable"
  ! grep -qE '^  LOAD .* RWE +0x' <<<"$headers" || echo "memory that is never writable and executable"
  ! grep -qF '(TEXTREL)' <<<"$headers" || echo "code without relocations"
  grep -qE ' U __stack_chk_fail(@|$)' <<<"$(nm -D "$1")" || echo "stack protection"
  path=$(sed -nE 's/.*\((RUNPATH|RPATH)\).*\[(.*)\]$/\2:/p' <<<"$headers")
  while IFS= read -r -d : entry; do
    [[ $entry == '$ORIGIN' || $entry == '$ORIGIN/'* ]] ||
      echo "a search path of nothing but its own surroundings (\"$entry\")"
  done < <(printf %s "$path")
}

# lacks_pe FILE: the same for Windows.
lacks_pe() {
  local headers word
  headers=$("$target-objdump" -p "$1")
  for word in HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT; do
    grep -qE "^\s+$word\$" <<<"$headers" || echo "$word"
  done
  ! grep -qE '^\s+relocations stripped' <<<"$headers" &&
    grep -qE '^Entry 5 [0-9a-f]* 0*[1-9a-f][0-9a-f]* Base Relocation' <<<"$headers" ||
    echo "relocations"
  ! "$target-objdump" -h "$1" | grep -E 'CODE' | grep -qv READONLY ||
    echo "memory that is never writable and executable"
  grep -qE ' T __stack_chk_fail$' <<<"$("$target-nm" "$1")" || echo "stack protection"
}

if [[ $(cache CMAKE_TOOLCHAIN_FILE) == *mingw.cmake ]]; then
  target=x86_64-w64-mingw32
  lacks=lacks_pe
  products=(mivora.exe pyxen-tool.exe mivora-view.exe Mivora.dll MivoraKVNPyxen.dll simulator/Bin/PxnC.dll
    trace/Bin/PxnC.dll recording/Bin/PxnC.dll)
  soft=(-Wl,--disable-dynamicbase,--disable-high-entropy-va,--disable-nxcompat,--disable-reloc-section)
  compiler=$target-gcc-posix
  expected=5
else
  lacks=lacks_elf
  products=(mivora pyxen-tool libMivora.so libMivoraKVNPyxen.so simulator/Bin/libPxnC.so
    trace/Bin/libPxnC.so recording/Bin/libPxnC.so)
  [ "$(cache MIVORA_GENICAM)" != ON ] || products+=(genicam/Bin/libPxnC.so)
  soft=(-no-pie -Wl,-z,norelro,-z,lazy,-z,execstack,-rpath,:/tmp)
  compiler=$(cache CMAKE_C_COMPILER)
  expected=7
fi

# The check itself: what a program is built without has to be found missing.
echo 'int main(void) { return 0; }' >"$work/soft.c"
"$compiler" -fno-stack-protector "${soft[@]}" -o "$work/soft.exe" "$work/soft.c" 2>"$work/log" ||
  { cat "$work/log"; exit 1; }
found=$($lacks "$work/soft.exe" | wc -l)
[ "$found" -eq "$expected" ] ||
  complain "in a program without hardening $found things were found missing, not $expected: $($lacks "$work/soft.exe")"

# check_products BUILD FILES...
check_products() {
  local bin=$1/bin product missing
  shift
  for product in "$@"; do
    if [ ! -e "$bin/$product" ]; then
      complain "$product is not built"
      continue
    fi
    missing=$($lacks "$bin/$product" | paste -sd ,)
    [ -z "$missing" ] || complain "$bin/$product lacks ${missing//,/, }"
  done
}

# check_commands BUILD: few checked functions remain in what is built, as the compiler takes the plain
# one where it knows that a copy fits or knows nothing of its size. So the commands are read.
check_commands() {
  local commands
  commands=$(grep -F '"command"' "$1/compile_commands.json" | grep -vF windres)
  [ "$(wc -l <<<"$commands")" -gt 20 ] || complain "$1/compile_commands.json has hardly any commands"
  ! grep -vE -- '-D_FORTIFY_SOURCE=[23] ' <<<"$commands" || complain "^ compiled without _FORTIFY_SOURCE"
}

check_products "$build" "${products[@]}"
if [ -z "$(cache MIVORA_SANITIZE)" ]; then
  [ "$(cache CMAKE_BUILD_TYPE)" != Release ] || check_commands "$build"
elif [ "$(cache MIVORA_CHECKS)" = ON ]; then
  # What is shipped for Linux is built without sanitizers: of that, the part that builds fastest.
  {
    cmake -S "$source" --preset release -B "$work/release" -DBUILD_TESTING=OFF &&
      cmake --build "$work/release" --target Mivora
  } >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
  check_products "$work/release" libMivora.so
  grep -qE ' U __[a-z]*printf_chk' <<<"$(nm -D "$work/release/bin/libMivora.so")" ||
    complain "libMivora.so calls no checked function"
  check_commands "$work/release"
fi
exit "$status"
