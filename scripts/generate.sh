#!/usr/bin/env bash
# Writes anew what follows from the tables and the public headers: the list of exported symbols, the stored description of
# the C interface, the recording of what each accessor does, and the reference page. Builds the release first.
set -euo pipefail
cd "$(dirname "$0")/.."

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

tests/object/interface_test.py gcc . --write
# What is declared is exported: the name stands before the arguments, the array's length or the end.
sed -n '/^typedef/d; /;$/{s/ *[(;[].*//; s/.*[ *]//; p}' tests/object/interface.txt | LC_ALL=C sort -u >src/libkova.symbols

cmake --preset release -DBUILD_TESTING=ON >/dev/null
cmake --build --preset release --target kovactl unit_tests >/dev/null
KOVA_RECORD=tests/unit/recording.txt build/release/bin/unit_tests --gtest_filter=Recording.* >/dev/null
KOVA_DEVICE="$scratch/device" build/release/bin/kovactl model --format markdown >docs/parameters.md
