#!/usr/bin/env bash
# Runs clang-tidy over the library, the platform, the device, the model and the tools; needs a configured dev preset.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files 'src/*.cpp' 'platform/*.cpp' 'device/*.cpp' 'model/*.cpp' 'tools/*.cpp' |
  xargs -P "$(nproc)" -n 4 clang-tidy -p build/dev --quiet 2> >(grep -v 'warnings\? generated' >&2)
