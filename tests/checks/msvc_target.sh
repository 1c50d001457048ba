# msvc_target.sh - the Microsoft target, for the checks that source this file
#
# Clang stands in for Visual C++, whose options it takes. The headers of the system and of the
# standard library are those of MinGW-w64, which Clang reads for the Microsoft target when it also
# claims the extensions of GCC. This suffices to compile; nothing can be linked.

mingw_cpp=$(x86_64-w64-mingw32-g++-posix -print-file-name=include/c++)
# Set as by Visual Studio's command prompt.
export INCLUDE="$mingw_cpp;$mingw_cpp/x86_64-w64-mingw32;/usr/share/mingw-w64/include"
mingw_options=(-fgnuc-version=4.2.1 -D__STRICT_ANSI__ -D__declspec=__declspec
  "-I$PWD/tests/checks/msvc_headers")

# configure_msvc BUILD [OPTION...]: configures the project for clang-cl.
configure_msvc() {
  local build=$1 tools
  shift
  rm -rf "$build"
  tools=$(dirname "$(readlink -f "$(command -v clang++)")")
  cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_SYSTEM_NAME=Windows \
    -DCMAKE_SYSTEM_PROCESSOR=AMD64 \
    -DCMAKE_C_COMPILER="$tools/clang-cl" -DCMAKE_CXX_COMPILER="$tools/clang-cl" \
    -DCMAKE_C_COMPILER_TARGET=x86_64-pc-windows-msvc \
    -DCMAKE_CXX_COMPILER_TARGET=x86_64-pc-windows-msvc \
    -DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY -DMIVORA_WERROR=ON \
    -DCMAKE_FIND_ROOT_PATH="$build" -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=ONLY \
    -DCMAKE_FIND_ROOT_PATH_MODE_LIBRARY=ONLY -DCMAKE_FIND_ROOT_PATH_MODE_INCLUDE=ONLY \
    -DCMAKE_LINKER="$tools/lld-link" -DCMAKE_AR="$tools/llvm-lib" -DCMAKE_MT="$tools/llvm-mt" \
    -DCMAKE_RC_COMPILER="$tools/llvm-rc" -Dgtest_disable_pthreads=ON "$@" >"$build.log" 2>&1 ||
    { cat "$build.log"; return 1; }
}

# compile_commands BUILD: the command of each object, one a line; not those of resources.
compile_commands() {
  sed -n 's/^  "command": "\(.* -c -- .*\)",$/\1/p' "$1/compile_commands.json" | sed 's/\\\(.\)/\1/g'
}

# check_syntax <COMMANDS: runs them as they are, except that no objects are written.
check_syntax() {
  CL="/Zs $(printf '"%s" ' "${mingw_options[@]}")" xargs -d '\n' -P "$(nproc)" -n 1 bash -c
}
