#!/usr/bin/env bash
# Prints the README's tour by running it on a scratch device; --write puts it into the README. Needs the release build.
set -euo pipefail
cd "$(dirname "$0")/.."

export PATH=$PWD/build/release/bin:$PATH
scratch=$(mktemp -d)
export KOVA_DEVICE=$scratch/device
export HOME=$scratch/home
mkdir "$HOME"
trap 'for device in "$KOVA_DEVICE" "$HOME/second"; do kovactl --device "$device" device down >/dev/null 2>&1 || true; done
      rm -rf "$scratch"' EXIT

tour() {
  while IFS= read -r command; do
    printf '    $ %s\n' "$command"
    (cd "$HOME" && bash -c "$command" 2>&1) | sed "s#$KOVA_DEVICE#~/.local/state/kova#; s#$HOME#~#; s/^/    /; s/ *$//" || true
  done <<'COMMANDS'
kovactl device up
kovactl find lease time
kovactl set X_KOVA_LAN.DHCPLeaseTime=5
kovactl list InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.DHCPLeaseTime
kovactl set X_KOVA_LAN.DHCPLeaseTime=3600
LAN=InternetGatewayDevice.LANDevice.1.X_KOVA_LAN; kovactl set --log $LAN.IPAddress=192.168.7.1 $LAN.DHCPPoolStart=192.168.7.100 $LAN.DHCPPoolEnd=192.168.7.200
kovactl set X_KOVA_LAN.IPAddress=192.168.9.1
kovactl set MACFilter.Mode=1
kovactl add X_KOVA_Route. 192.168.7.2,10.1.0.0,255.255.0.0,0
kovactl export >router.conf; grep -c = router.conf
export KOVA_DEVICE=~/second; kovactl device up --serial SECOND-0001
KOVA_DEVICE=~/second kovactl set --file router.conf | tail -n 2
KOVA_DEVICE=~/second kovactl get DeviceInfo.SerialNumber X_KOVA_LAN.IPAddress X_KOVA_Route.
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
