#!/usr/bin/env bash
# packages.sh SOURCES PACKAGES WORK WINE-BUILD: installs each package of `./dev dist` into an empty
# root and uses it there
#
# WINE-BUILD is the build directory whose Wine prefix runs programs for Windows.
set -euo pipefail
sources=$1
packages=$2
work=$3
wine_build=$4

fail() {
  echo "$1"
  exit 1
}
quietly() { # quietly COMMAND...: what it prints is shown when it fails
  "$@" >"$work/log" 2>&1 || { cat "$work/log"; fail "$1 has failed"; }
}
# The only package whose name has this form.
package() {
  local found=("$packages"/$1)
  [ ${#found[@]} -eq 1 ] && [ -e "${found[0]}" ] || fail "there is not one package $1 in $packages"
  printf '%s' "${found[0]}"
}
use() { bash "$sources/tests/checks/use_package.sh" "$sources" "$@"; }

rm -rf "$work"
mkdir -p "$work"

# ---- .tar.gz ---------------------------------------------------------------------------------

archive=$(package 'mivora-*-linux-x86_64.tar.gz')
mkdir "$work/tar"
quietly tar -xf "$archive" -C "$work/tar"
use "$work/tar/$(basename "$archive" .tar.gz)" "$work/tar/use"

# ---- .deb ------------------------------------------------------------------------------------

runtime=$(package 'mivora_*_amd64.deb')
development=$(package 'mivora-dev_*_amd64.deb')
tools=$(package 'mivora-tools_*_amd64.deb')
listing=$(dpkg-deb -c "$runtime")
! grep -E ' \./usr/(include|bin)/' <<<"$listing" || fail "^ is in $runtime"
grep -qF ' ./usr/lib/libMivora.so.1 -> ' <<<"$listing" || fail "$runtime has no host library"

grep -qF ' ./usr/share/man/man1/mivora.1' <<<"$(dpkg-deb -c "$tools")" || fail "$tools has no manual page"

# Where nothing is but what dpkg knows of this machine's packages. Scripts of packages run outside
# of it, so that they get an ldconfig that does nothing.
root=$work/root
mkdir -p "$root"/var/lib/dpkg/{info,updates,triggers,parts,alternatives} "$work/stubs"
cp /var/lib/dpkg/status "$root/var/lib/dpkg/status"
sed -i '/^Package: mivora/,/^$/d' "$root/var/lib/dpkg/status"
printf '#!/bin/sh\n' >"$work/stubs/ldconfig"
chmod +x "$work/stubs/ldconfig"
in_root() {
  PATH=$work/stubs:$PATH:/usr/sbin:/sbin dpkg --root="$root" --log="$work/dpkg.log" --force-not-root \
    --force-script-chrootless --no-triggers "$@"
}
if in_root -i "$tools" >"$work/log" 2>&1; then
  fail "$tools can be installed without what it needs"
fi
quietly in_root -i "$runtime" "$development" "$tools"
use "$root/usr" "$work/deb"
quietly in_root -r mivora-dev mivora-tools mivora
[ ! -e "$root/usr" ] || fail "removing the packages leaves $(find "$root/usr" -type f | head -n 3)"

# ---- .zip ------------------------------------------------------------------------------------

archive=$(package 'mivora-*-windows-x86_64.zip')
mkdir "$work/zip"
(cd "$work/zip" && quietly cmake -E tar xf "$archive")
prefix=$work/zip/$(basename "$archive" .zip)
# The host library is found as on Windows, by the search path.
export WINEPATH=$prefix/bin MIVORA_WINE_BUILD=$wine_build
RUN="bash $sources/cmake/run-under-wine.sh" use "$prefix" "$work/zip/use" \
  -DCMAKE_TOOLCHAIN_FILE="$sources/cmake/mingw.cmake" -DCMAKE_EXE_LINKER_FLAGS=-static
