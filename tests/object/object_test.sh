#!/usr/bin/env bash
# Usage: object_test.sh CHECK LIBRARY SOURCE-DIRECTORY [C-COMPILER C++-COMPILER]
set -euo pipefail
export LC_ALL=C
check=$1 library=$2 source=$3
symbols=$source/src/libkova.symbols

# Succeeds when standard input is empty; what is there is shown under the title.
expect_none() {
  local found
  found=$(cat)
  [ -z "$found" ] || { printf '%s:\n%s\n' "$1" "$found"; exit 1; }
}

# The lines that do not match; none is no failure.
without() { grep -vxE "$1" || [ $? -eq 1 ]; }

case $check in
exports) # exactly the listed symbols, of the interface's version
  exported=$(nm -D --defined-only "$library" | awk '$2 != "A" && $3 !~ /^__odr_asan/ { print $3 }' | sort -u)
  comm -13 <(echo "$exported") <(sed 's/$/@@KOVA_1/' "$symbols") | expect_none "listed, but not exported"
  comm -23 <(echo "$exported") <(sed 's/$/@@KOVA_1/' "$symbols") | expect_none "exported, but not listed"
  ;;
declared) # every listed symbol is declared in a public header, in C
  scratch=$(mktemp -d)
  trap 'rm -rf "$scratch"' EXIT
  {
    for header in "$source"/include/kova/*.h; do echo "#include \"$header\""; done
    echo 'const void *const listed[] = {'
    sed 's/.*/  (const void *)\&&,/' "$symbols"
    echo '};'
  } >"$scratch/listed.c"
  "$4" -std=c11 -I"$source/include" -c "$scratch/listed.c" -o "$scratch/listed.o"
  ;;
headers) # each public header stands alone
  for header in "$source"/include/kova/*.h "$source"/platform/*.h; do
    "$4" -std=c11 -Wall -Wextra -Wpedantic -Werror -I"$source/include" -fsyntax-only -x c "$header"
    "$5" -std=c++20 -Wall -Wextra -Wpedantic -Werror -I"$source/include" -fsyntax-only -x c++ "$header"
  done
  ;;
binding) # no call between the library's own functions can be interposed, but that which takes the traces
  readelf -Wr "$library" | awk '$3 ~ /JUMP_SLO|GLOB_DAT/ { sub("@.*", "", $5); print $5 }' | sort -u |
    comm -12 - "$symbols" | without 'g[A-Z_][A-Za-z_]*|dbg_trace' | expect_none "bound at load time"
  ;;
needs) # nothing but libc and the platform's libraries, and no path of the build machine
  readelf -d "$library" | sed -n 's/.*NEEDED.*\[\(.*\)\]/\1/p' |
    without 'lib(tarn_nvram|ucfg|webs|ltesdk|lted)\.so\.1|libc\.so\.6' | expect_none "needed at run time"
  readelf -d "$library" | grep -q 'SONAME.*\[libkova\.so\.1\]'
  strings "$library" | awk -v path="$source" 'index($0, path)' | expect_none "paths of the build machine"
  ;;
size) # in bytes, as a device stores it
  stripped=$(mktemp)
  trap 'rm -f "$stripped"' EXIT
  strip -o "$stripped" "$library"
  size=$(stat -c %s "$stripped")
  echo "$size bytes, at most $4"
  [ "$size" -le "$4" ]
  ;;
frames) # what a function takes of the stack, as the compiler wrote it beside each object
  usage=$(find "$5" -name '*.su' -exec cat {} +)
  [ -n "$usage" ] || { echo "no stack usage below $5"; exit 1; }
  awk -F'\t' -v most="$4" '$2 > most || $3 ~ /^dynamic$/' <<<"$usage" | expect_none "larger than $4 bytes, or without bound"
  ;;
*) echo "object_test.sh: no check named '$check'" >&2; exit 2 ;;
esac
