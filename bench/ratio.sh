#!/usr/bin/env bash
# Counts the instructions of calls, which no other load on the machine changes; exit status 1 when an aim is missed.
#   bench/ratio.sh KOVA_COUNT
set -euo pipefail
count=$1
largest_ratio=110 # a plain getter, in hundredths of the bare store call into a zeroed text and one strncpy
largest_tree=6000 # a getter of the tree, in instructions

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Instructions of a call: what a thousand more of them add.
instructions() {
  local times total=()
  for times in 1000 2000; do
    valgrind --tool=callgrind --callgrind-out-file="$scratch/out" "$count" "$1" "$times" >"$scratch/log" 2>&1 ||
      { cat "$scratch/log" >&2; exit 1; }
    total+=("$(sed -n 's/^summary: \([0-9]*\).*/\1/p' "$scratch/out")")
  done
  echo $(((total[1] - total[0]) / 1000))
}

getter=$(instructions getter)
direct=$(instructions direct)
tree=$(instructions tree)
ratio=$((100 * getter / direct))
echo "a plain getter: $getter instructions, the bare store call: $direct, $ratio % (at most $largest_ratio %)"
echo "a getter of the tree: $tree instructions (at most $largest_tree)"
[ "$ratio" -le "$largest_ratio" ] && [ "$tree" -le "$largest_tree" ]
