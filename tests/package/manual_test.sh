#!/usr/bin/env bash
# The manual pages: formatted without complaints, and kovactl's has every command and option that the program tells of.
# Usage: manual_test.sh KOVACTL KOVACTL-PAGE OTHER-PAGE...
set -euo pipefail
export LC_ALL=C.UTF-8 MANWIDTH=200
kovactl=$1 page=$2
failed=0
fail() { echo "$*"; failed=1; }

for any in "${@:2}"; do
  complaints=$(man --warnings -E UTF-8 -Tutf8 -Z -l "$any" 2>&1 >/dev/null) || complaints+=" it cannot be formatted"
  [ -z "$complaints" ] || fail "$any: $complaints"
done

text=$(man -P cat -l "$page")
commands() { # those of the program, or of a group
  "$kovactl" "$@" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p'
}
leaves() {
  local command=
  for command in $(commands); do
    [ -n "$(commands "$command")" ] && commands "$command" | sed "s/^/$command /" || echo "$command"
  done
}
while read -r -a command; do
  grep -qE "^\.It Cm ${command[*]}( |$)" "$page" || fail "the page has no command \"${command[*]}\""
  for option in $("$kovactl" "${command[@]}" --help | grep -oE -- '--[a-z-]*[a-z]'); do
    grep -qE -- "$option\b" <<<"$text" || fail "the page has no option \"$option\", which is one of \"${command[*]}\""
  done
done < <(leaves)
[ "$(leaves | wc -l)" -gt 10 ] || fail "too few commands were found in the help: $(leaves | xargs)"
exit $failed
