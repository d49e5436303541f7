#!/usr/bin/env bash
# The long versions of the tests that kill the program and run two of it at once; the short ones are among ./test.
#
#   scripts/soak-store.sh kills [COUNT [SEED]]    kills of the services in a process of their own (500)
#   scripts/soak-store.sh window [COUNT [SEED]]   kills of the program itself, operated by its window (40)
#   scripts/soak-store.sh copies [COUNT]          covers of two copies together (1000)
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

case ${1:-} in
kills) program=reliability_tests test=KilledAtAnyMomentTest count=500 ;;
window) program=end_to_end_tests test=KilledWindowTest count=40 ;;
copies) program=reliability_tests test=TwoCopiesTest count=1000 ;;
*)
    sed -n '2,6s/^# \{0,1\}//p' "$0" >&2
    exit 2
    ;;
esac

install_packages build run display test
build_preset debug "$program"
export QUILMORA_RUN_COUNT=${2:-$count}
[ -z "${3:-}" ] || export QUILMORA_RUN_SEED=$3
# In milliseconds: without it a test function may take five minutes.
export QTEST_FUNCTION_TIMEOUT=36000000
exec ctest --preset debug -R "^$test\$" --timeout 36000 --verbose
