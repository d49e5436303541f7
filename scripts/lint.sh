#!/usr/bin/env bash
# Checks the layout of the code (clang-format) and the code itself (clang-tidy). Clazy needs no run of its own: it looks
# at what the preset "sanitize" compiles.
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
else
    files=$(git ls-files 'src/*.cpp' 'tools/*.cpp' 'benchmarks/*.cpp')
fi

echo "clang-tidy: $(grep -c . <<<"$files") files"
printf '%s\n' "$files" | xargs -P "$(getconf _NPROCESSORS_ONLN)" -n 4 clang-tidy -p build/tidy --quiet 2>/dev/null
