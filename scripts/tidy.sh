#!/usr/bin/env bash
# Runs clang-tidy over all C++ sources but the tests. They are configured for clang and one by one; nothing is built.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build/tidy -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
  -DBUILD_TESTING=OFF -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null
git ls-files 'src/*.cpp' 'platform/*.cpp' 'model/*.cpp' 'device/*.cpp' 'request/*.cpp' 'agent/*.cpp' 'tools/*.cpp' |
  xargs -P "$(nproc)" -n 4 clang-tidy -p build/tidy --quiet 2> >(grep -v 'warnings\? generated' >&2)
