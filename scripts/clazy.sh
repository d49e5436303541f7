#!/usr/bin/env bash
# Runs clazy over the given files and fails when it has anything to say.
set -euo pipefail
cd "$(dirname "$0")/.."

# check CHECKS FILE...
check() {
    local checks=$1 output said status=0
    shift
    [ $# -gt 0 ] || return 0
    output=$(clazy-standalone -p build/tidy --checks="$checks" \
        --header-filter="$PWD/(src|tests|tools|benchmarks)/.*" "$@" 2>&1) || status=$?
    said=$(grep -E 'warning:|error:' <<<"$output" | sort -u || true)
    if [ -n "$said" ] || [ "$status" -ne 0 ]; then
        printf '%s\n' "${said:-$output}"
        return 1
    fi
}

tests=()
others=()
for file in "$@"; do
    case $file in
    tests/* | "$PWD"/tests/*) tests+=("$file") ;;
    *) others+=("$file") ;;
    esac
done
status=0
check level1 ${others[@]+"${others[@]}"} || status=1
# The ones taken out contradict the style of tests.
check level1,no-qproperty-type-mismatch,no-non-pod-global-static,no-lambda-in-connect \
    ${tests[@]+"${tests[@]}"} || status=1
exit "$status"
