#!/usr/bin/env bash
# Runs clang-tidy over the library, the platform, the model and the agent; needs a configured dev preset. The other
# programs of the host do not hold to it yet.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files 'src/*.cpp' 'platform/*.cpp' 'model/*.cpp' 'agent/*.cpp' |
  xargs -P "$(nproc)" -n 4 clang-tidy -p build/dev --quiet 2> >(grep -v 'warnings\? generated' >&2)
