#!/usr/bin/env bash
# Checks the layout of the code (clang-format) and the code itself (clang-tidy). Clazy needs no run of its own: it looks
# at what the preset "asan" compiles.
#
#   scripts/lint.sh             everything
#   scripts/lint.sh FILE.cpp…   only these files
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages build run test lint

echo "clang-format"
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror

# The checkers need the generated sources and the precompiled headers, not the programs. As targets of the build the
# headers would wait for the libraries.
cores=$(getconf _NPROCESSORS_ONLN)
if [ ! -f build/tidy/build.ninja ]; then
    cmake --preset tidy >/dev/null
    sed -n 's/^ *"command": "\(.* -emit-pch .*\)",$/\1/p' build/tidy/compile_commands.json | sed 's/\\\(.\)/\1/g' |
        (cd build/tidy && xargs -d '\n' -P "$cores" -n 1 bash -c)
fi
cmake --build --preset tidy --target autogen >/dev/null

# Where the plugin cannot be built or loaded, clang-tidy finds the same in three times the time.
plugin=build/tidy/own-code-only.so
clang_headers=$(dirname "$(readlink -f "$(command -v clang-tidy)")")/../include
tidy=(clang-tidy -p build/tidy --quiet)
if [ ! scripts/lint/OwnCodeOnly.cpp -nt "$plugin" ] ||
    clang++ -std=c++17 -O1 -fPIC -shared -fno-rtti -isystem "$clang_headers" scripts/lint/OwnCodeOnly.cpp -o "$plugin"; then
    tidy+=("--load=$plugin" --checks=quilmora-own-code-only)
fi

if [ $# -gt 0 ]; then
    files=$(printf '%s\n' "$@")
else
    files=$(git ls-files 'src/*.cpp' 'tools/*.cpp' 'benchmarks/*.cpp' 'tests/*.cpp')
fi

echo "clang-tidy: $(grep -c . <<<"$files") files"
printf '%s\n' "$files" | xargs -P "$cores" -n 4 "${tidy[@]}" 2>/dev/null
