#!/usr/bin/env bash
# Installs what is needed, then checks the format, builds the dev and the release presets and runs the tests of both, runs
# the unit tests as a 32-bit big-endian program, runs the fuzz targets for a moment, looks at what the library's calls cost,
# compiles the library for 32-bit big-endian ARM, and runs clang-tidy.
#   scripts/test.sh [--quick]     --quick: the format, the library's own tests with sanitizers, and all tests of the release
set -euo pipefail
cd "$(dirname "$0")/.."

quick=false
[ "${1:-}" != --quick ] || quick=true

xargs -a scripts/build-packages.txt scripts/packages.sh
xargs -a scripts/test-packages.txt scripts/packages.sh
$quick || xargs -a scripts/cross-packages.txt scripts/packages.sh

git ls-files '*.c' '*.h' '*.cpp' '*.hpp' | xargs clang-format --dry-run --Werror
# run PRESET [TARGET]: the tests of one program, or all. Most wait more than they work.
run() {
  cmake --preset "$1" -DBUILD_TESTING=ON >/dev/null
  cmake --build --preset "$1" ${2:+--target "$2"}
  ctest --preset "$1" -j $((3 * $(nproc))) ${2:+-R "^$2\\."}
}
if $quick; then
  run dev unit_tests
  run release
  exit
fi
run dev
run release
run powerpc

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
for target in accessors acs_message records request_text; do
  (cd build/fuzz && "bin/fuzz_$target" -runs=20000 -seed=1 -len_control=0 -max_len=2000 >"$target.log" 2>&1) ||
    { cat "build/fuzz/$target.log"; exit 1; }
done

cmake --preset bench >/dev/null
cmake --build --preset bench --target kova_bench kova_count
bench/ratio.sh build/bench/bin/kova_count

cmake --preset armeb >/dev/null
cmake --build --preset armeb
find build/armeb/src -name '*.o' -exec readelf -h {} + | sed -n 's/^ *\(Class\|Data\|Machine\): *//p' | LC_ALL=C sort -u |
  diff - <(printf '%s\n' "2's complement, big endian" ARM ELF32)
scripts/tidy.sh
