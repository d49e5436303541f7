#!/usr/bin/env bash
# Lets a fuzzer run for as long as one likes, from what its earlier runs have found on.
#
#   scripts/fuzz.sh Response|Picture SECONDS
#
# What it finds is kept in build/fuzz/found/; an input that breaks something is named at the end, and the exit status is
# not zero.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

if [ $# -ne 2 ]; then
    echo "Usage: scripts/fuzz.sh Response|Picture SECONDS" >&2
    exit 2
fi
subject=$1
seconds=$2
install_packages build run test lint
build_preset fuzz "${subject}Fuzzer" fuzz_corpus

folder=build/fuzz/found/${subject,,}
mkdir -p "$folder"
export QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0
build/fuzz/tests/fuzz/"${subject}Fuzzer" -max_total_time="$seconds" -timeout=60 -rss_limit_mb=2048 \
    -close_fd_mask=3 -print_final_stats=1 -artifact_prefix=build/fuzz/found/ "$folder" "build/fuzz/tests/fuzz/seeds/${subject,,}"
