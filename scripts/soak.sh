#!/usr/bin/env bash
# Runs the tests of a preset so many times beside two busy loops: what depends on the time that something takes fails here.
#   scripts/soak.sh [TIMES [PRESET [CTEST-ARGUMENT...]]]     20 times release, unless it says otherwise
set -euo pipefail
cd "$(dirname "$0")/.."
times=${1:-20} preset=${2:-release}
shift $(($# < 2 ? $# : 2))

busy=()
trap 'kill "${busy[@]}" 2>/dev/null || true' EXIT
for _ in 1 2; do
  while :; do :; done &
  busy+=($!)
done

failed=0
for ((run = 1; run <= times; run++)); do
  if ctest --preset "$preset" -j $((3 * $(nproc))) "$@" >"build/$preset/soak.log" 2>&1; then
    echo "$run passed"
  else
    failed=$((failed + 1))
    echo "$run failed:"
    sed -n '/The following tests FAILED/,$p' "build/$preset/soak.log"
    mv "build/$preset/soak.log" "build/$preset/soak.$run.log"
  fi
done
echo "$((times - failed)) of $times passed"
[ "$failed" -eq 0 ]
