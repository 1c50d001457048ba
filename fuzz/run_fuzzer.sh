#!/usr/bin/env bash
# run_fuzzer.sh PROGRAM SEEDS DIRECTORY: runs a fuzzer for MIVORA_FUZZ_SECONDS (default 5)
#
# It starts from its seeds and from the corpus of earlier runs in DIRECTORY, where an input that fails
# is kept as well. The words of dictionaries/NAME.dict help it to find others.
set -euo pipefail

name=$(basename "$1")
corpus=$3/corpus/$name
dictionary=$(dirname "$0")/dictionaries/$name.dict
mkdir -p "$corpus"
options=()
[ ! -e "$dictionary" ] || options+=("-dict=$dictionary")
[ ! -w /dev/shm ] || export TMPDIR=/dev/shm # a save waits for the disk
"$1" "$corpus" "$2" -max_total_time="${MIVORA_FUZZ_SECONDS:-5}" -timeout=10 -rss_limit_mb=4096 \
  -max_len=4096 -print_final_stats=1 -close_fd_mask=2 -artifact_prefix="$3/$name-" "${options[@]}"
