#!/usr/bin/env bash
# Checks the layout of the code (clang-format) and the code itself (clazy, clang-tidy).
#
#   scripts/lint.sh             everything, but clang-tidy not over the tests, which would take it twice as long
#   scripts/lint.sh FILE.cpp…   only these files, be they tests
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages build run test lint

echo "clang-format"
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror

# The checkers need the generated sources, not the programs.
[ -f build/tidy/build.ninja ] || cmake --preset tidy >/dev/null
cmake --build --preset tidy --target generated_sources >/dev/null

if [ $# -gt 0 ]; then
    files=$(printf '%s\n' "$@")
    for_tidy=$files
else
    for_tidy=$(git ls-files 'src/*.cpp' 'tools/*.cpp' 'benchmarks/*.cpp')
    files=$for_tidy$'\n'$(git ls-files 'tests/*.cpp')
fi
jobs=$(getconf _NPROCESSORS_ONLN)

echo "clazy: $(grep -c . <<<"$files") files"
printf '%s\n' "$files" | xargs -P "$jobs" -n 8 scripts/clazy.sh

echo "clang-tidy: $(grep -c . <<<"$for_tidy") files"
printf '%s\n' "$for_tidy" | xargs -P "$jobs" -n 4 clang-tidy -p build/tidy --quiet 2>/dev/null
