#!/usr/bin/env bash
# Prints the README's tour by running it on a scratch device; --write puts it into the README. Needs the release build.
set -euo pipefail
cd "$(dirname "$0")/.."

export PATH=$PWD/build/release/bin:$PATH
scratch=$(mktemp -d)
export KOVA_DEVICE=$scratch/device
trap 'kovactl device down >/dev/null 2>&1 || true; rm -rf "$scratch"' EXIT

tour() {
  while IFS= read -r command; do
    printf '    $ %s\n' "$command"
    bash -c "$command" 2>&1 | sed "s#$KOVA_DEVICE#~/.local/state/kova#; s/^/    /; s/ *$//" || true
  done <<'COMMANDS'
kovactl device up
kovactl get InternetGatewayDevice.LANDevice.1.LANHostConfigManagement.
LAN=InternetGatewayDevice.LANDevice.1.X_KOVA_LAN; kovactl set $LAN.IPAddress=192.168.7.1 $LAN.DHCPPoolStart=192.168.7.100 $LAN.DHCPPoolEnd=192.168.7.200
kovactl set InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.IPAddress=192.168.9.1
kovactl list InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.D
kovactl log
COMMANDS
}

if [ "${1:-}" = --write ]; then
  tour >"$scratch/tour"
  awk -v tour="$scratch/tour" '
    /^## A tour/ { print; print ""; while ((getline line < tour) > 0) print line; print ""; skip = 1; next }
    /^## / { skip = 0 }
    !skip { print }' README.md >"$scratch/README.md"
  cp "$scratch/README.md" README.md
else
  tour
fi
