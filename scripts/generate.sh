#!/usr/bin/env bash
# Writes anew what follows from the tables and the public headers: the list of exported symbols, the stored description of
# the C interface, and the reference page. Builds the release first.
set -euo pipefail
cd "$(dirname "$0")/.."

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

tests/object/interface_test.py gcc . --write
# What is declared is exported: the name stands before the arguments, the array's length or the end.
sed -n '/^typedef/d; /;$/{s/ *[(;[].*//; s/.*[ *]//; p}' tests/object/interface.txt | LC_ALL=C sort -u >src/libkova.symbols

cmake --preset release >/dev/null
cmake --build --preset release --target kovactl >/dev/null
KOVA_DEVICE="$scratch/device" build/release/bin/kovactl model --format markdown >docs/parameters.md
