#!/usr/bin/env bash
# Builds the tests in which threads meet, and those of files and store, and runs them under the thread sanitizer.
#
#   scripts/tsan.sh [ARGUMENT OF CTEST…]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages build run display test lint
build_preset tsan
# Some systems lay out addresses more at random than the sanitizer can bear.
steady=
if setarch -R true 2>/dev/null; then
    steady="setarch -R"
fi
exec $steady ctest --preset tsan "$@"
