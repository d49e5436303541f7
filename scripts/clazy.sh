#!/usr/bin/env bash
# Runs clazy over the given files and fails when it has anything to say.
set -euo pipefail
cd "$(dirname "$0")/.."
# The ones taken out contradict the style of the project or of its tests.
checks=level1,no-qproperty-type-mismatch,no-non-pod-global-static,no-lambda-in-connect
status=0
output=$(clazy-standalone -p build/tidy --checks="$checks" \
    --header-filter="$PWD/(src|tests|tools|benchmarks)/.*" "$@" 2>&1) || status=$?
said=$(grep -E 'warning:|error:' <<<"$output" | sort -u || true)
if [ -n "$said" ] || [ "$status" -ne 0 ]; then
    printf '%s\n' "${said:-$output}"
    exit 1
fi
