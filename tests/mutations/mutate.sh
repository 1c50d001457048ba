#!/usr/bin/env bash
# mutate.sh BUILD-DIRECTORY [NAME...]: whether the tests fail when the product does
# mutate.sh BUILD-DIRECTORY --check: whether every mutation can be applied; builds nothing
#
# Each *.list file beside this script holds mutations: small changes to the sources, each of which
# breaks one thing that the product must do. Each is applied to a copy of the sources; the suite
# concerned is built and run there with the tests that have to fail. NAME is that of a mutation or of
# a list; without any, all are applied. The status is 0 when every mutation is killed.
#
# A list has blocks separated by empty lines; `#` begins a comment.
#
#   name: requeue-after-stop            words with hyphens, after the operation
#   file: module/acquisition/x.cpp      the source, from the root
#   suite: module_tests Filter.*        a test program, and the tests in which it has to fail;
#                                       `windows:` before it means the Windows build, under Wine
#   after: TEXT                         where the next lines are looked for, if they occur twice
#   - TEXT                              a line that goes
#   + TEXT                              the line that comes in its place
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
work=$1
shift
copy=$work/copy
log=$work/log
limit=60 # seconds for the tests of one mutation

say() { printf '%s\n' "$*" >&2; }

# ---- the lists -------------------------------------------------------------------------------

# A directory for each mutation, with the files `file`, `suite` and `edit`, in the order of the lists.
read_lists() {
  rm -rf "$work/mutations"
  mkdir -p "$work/mutations"
  awk -v into="$work/mutations" '
    function begin_block() { if (!name) { print FILENAME ":" FNR ": no name" > "/dev/stderr"; exit 1 } }
    FNR == 1 { name = ""; list = FILENAME; sub(/.*\//, "", list); sub(/\.list$/, "", list) }
    /^#/ { next }
    /^$/ { name = ""; next }
    /^name: / {
      name = $2
      if (name in seen) { print FILENAME ":" FNR ": a second " name > "/dev/stderr"; exit 1 }
      seen[name] = 1
      directory = sprintf("%s/%04d-%s", into, ++count, name)
      system("mkdir -p " directory)
      print name > (directory "/name")
      print list > (directory "/list")
      next
    }
    { begin_block() }
    /^file: / { print $2 > (directory "/file"); next }
    /^suite: / { print $2, $3 > (directory "/suite"); next }
    /^(after:|-|\+)/ { print > (directory "/edit"); next }
    { print FILENAME ":" FNR ": not understood: " $0 > "/dev/stderr"; exit 1 }
  ' "$here"/*.list
}

chosen() { # chosen NAME...: the directories of these mutations, of all without any
  local directory name list known wanted
  for wanted in "$@"; do
    known=
    for directory in "$work/mutations"/*/; do
      [ "$(cat "$directory/name")" != "$wanted" ] && [ "$(cat "$directory/list")" != "$wanted" ] || known=1
    done
    [ -n "$known" ] || { say "there is no mutation and no list '$wanted'"; return 2; }
  done
  for directory in "$work/mutations"/*/; do
    name=$(cat "$directory/name")
    list=$(cat "$directory/list")
    [ $# -eq 0 ] || [[ " $* " == *" $name "* || " $* " == *" $list "* ]] || continue
    printf '%s\n' "${directory%/}"
  done
}

# ---- the copy --------------------------------------------------------------------------------

# Files that are as they were keep their times, so that nothing is built in vain.
refresh_copy() {
  local file
  mkdir -p "$copy"
  (cd "$root" && git ls-files -co --exclude-standard) | sort >"$work/files"
  while read -r file; do
    [ -e "$root/$file" ] || continue
    cmp -s "$root/$file" "$copy/$file" && continue
    mkdir -p "$copy/$(dirname "$file")"
    cp "$root/$file" "$copy/$file"
  done <"$work/files"
  (cd "$copy" && find . -path ./build -prune -o -type f -print) | sed 's|^\./||' | sort |
    comm -13 "$work/files" - | while read -r file; do rm "$copy/$file"; done
  mkdir -p "$copy/build"
  ln -sfn "$root/build/third_party" "$copy/build/third_party"
}

# ---- suites ----------------------------------------------------------------------------------

preset_of() { [[ $1 == windows:* ]] && echo mutations-windows || echo mutations; }

build_suite() { # build_suite SUITE...: of one build
  local preset
  preset=$(preset_of "$1")
  (cd "$copy" && { [ -e "build/$preset/build.ninja" ] || cmake --preset "$preset"; } &&
    cmake --build --preset "$preset" --target "${@#windows:}") >"$log" 2>&1
}

run_suite() { # run_suite SUITE ARGS...
  local suite=$1 bin
  bin=$copy/build/$(preset_of "$suite")/bin
  shift
  if [[ $suite == windows:* ]]; then
    mkdir -p "$work/screenshots"
    MIVORA_WINE_DPI=96 MIVORA_SCREENSHOTS=Z:$work/screenshots timeout -k 5 "$limit" \
      bash "$copy/cmake/run-under-wine.sh" "$bin/${suite#windows:}.exe" "$@" >"$log" 2>&1
  else
    (cd "$bin" && timeout -k 5 "$limit" "./$suite" "$@") >"$log" 2>&1
  fi
}

# A failing test says nothing about a mutation when it fails without one, nor does one that is not there.
check_unmutated() { # check_unmutated DIRECTORY...
  local directory suite filter status=0
  for suite in $(cat "${@/%//suite}" | awk '{ print $1 }' | sort -u); do
    build_suite "$suite" || { cat "$log" >&2; say "$suite could not be built"; return 1; }
  done
  while read -r suite filter; do
    run_suite "$suite" "--gtest_filter=$filter" || {
      say "fails without a mutation: $suite $filter"
      status=1
    }
    grep -qE '^\[  PASSED  \] [1-9]' "$log" || { say "no test matches: $suite $filter"; status=1; }
  done < <(cat "${@/%//suite}" | sort -u)
  return "$status"
}

# ---- mutations -------------------------------------------------------------------------------

mutate() { # mutate DIRECTORY: the mutated source in $work/mutated
  awk -f "$here/edit.awk" "$1/edit" "$root/$(cat "$1/file")" >"$work/mutated" 2>"$log"
}

check_lists() {
  local directory status=0 count=0
  for directory in "$work/mutations"/*/; do
    count=$((count + 1))
    mutate "${directory%/}" && ! cmp -s "$work/mutated" "$root/$(cat "$directory/file")" || {
      say "$(cat "$directory/name") changes nothing in $(cat "$directory/file"): $(cat "$log")"
      status=1
    }
    [ "$(wc -w <"$directory/suite")" -eq 2 ] || { say "$(cat "$directory/name") names no tests"; status=1; }
  done
  [ "$count" -gt 100 ] || { say "only $count mutations were found"; status=1; }
  return "$status"
}

verdict() { # verdict DIRECTORY: one word, and a reason
  local file suite filter status=0
  file=$(cat "$1/file")
  read -r suite filter <"$1/suite"
  mutate "$1" || {
    echo "invalid: $file: $(cat "$log")"
    return
  }
  cp "$work/mutated" "$copy/$file"
  if ! build_suite "$suite"; then
    echo "invalid: does not compile: $(grep -m 1 'error:' "$log")"
  else
    run_suite "$suite" "--gtest_filter=$filter" || status=$?
    case $status in
      0) echo survived ;;
      124 | 137) echo "survived: its tests take longer than $limit s" ;;
      *) echo killed ;;
    esac
  fi
  cp "$root/$file" "$copy/$file"
}

read_lists
if [ "${1:-}" = --check ]; then
  check_lists
  exit
fi
mapfile -t directories < <(chosen "$@" || echo none)
[ "${directories[0]:-}" != none ] || exit 2
say "-- ${#directories[@]} mutations; building the suites without any"
refresh_copy
check_unmutated "${directories[@]}"
killed=0
for directory in "${directories[@]}"; do
  start=$SECONDS
  answer=$(verdict "$directory")
  printf '%-12s %4d s  %s%s\n' "${answer%%:*}" "$((SECONDS - start))" "$(cat "$directory/name")" \
    "$([[ $answer != *:* ]] || printf '  (%s)' "${answer#*: }")"
  [ "$answer" != killed ] || killed=$((killed + 1))
done
printf '%d mutations, %d killed\n' "${#directories[@]}" "$killed"
[ "$killed" -eq "${#directories[@]}" ]
