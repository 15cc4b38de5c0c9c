#!/usr/bin/env bash
# Installs what is needed, builds the release, boots a virtual device, moves its LAN and runs a ping test: the main job,
# shown.
set -euo pipefail
cd "$(dirname "$0")/.."

xargs -a scripts/build-packages.txt scripts/packages.sh
cmake --preset release -DBUILD_TESTING=OFF >/dev/null
cmake --build --preset release >/dev/null || cmake --build --preset release

export PATH=$PWD/build/release/bin:$PATH
KOVA_DEVICE=$(mktemp -d)
export KOVA_DEVICE
trap 'kovactl device down >/dev/null || true; rm -rf "$KOVA_DEVICE"' EXIT

say() { printf '\n== %s\n' "$*"; }
show() {
  printf '$ %s\n' "$*"
  "$@" || printf '(exit status %d)\n' $?
}

lan=InternetGatewayDevice.LANDevice.1.X_KOVA_LAN
rules="DMZEnable DMZAddress PortForwardEnable PortForwardRules IPPortFilterEnable IPPortFilterRules"

say "A virtual device with factory settings"
show kovactl device up
show kovactl get $lan.

say "One request moves the LAN to another subnet, with its DHCP pool"
show kovactl set $lan.IPAddress=192.168.7.1 $lan.DHCPPoolStart=192.168.7.100 $lan.DHCPPoolEnd=192.168.7.200

say "The rules that named addresses of the old network are gone, and the move is marked"
show kovactl nvram get $rules
show kovactl nvram get --section 9 different_subnets

say "What the device was asked to do: the DHCP server was restarted for each of the three"
show kovactl log

say "A request whose pool misses the subnet is refused as a whole"
show kovactl set $lan.IPAddress=192.168.9.1 $lan.DHCPPoolStart=192.168.8.100 $lan.DHCPPoolEnd=192.168.8.200
show kovactl get $lan.IPAddress $lan.DHCPPoolStart $lan.DHCPPoolEnd

say "A diagnostics test that really runs"
ping=InternetGatewayDevice.IPPingDiagnostics
show kovactl set --wait $ping.Host=127.0.0.1 $ping.NumberOfRepetitions=3 $ping.DiagnosticsState=Requested

say "The radio, as the device computes it when it is read"
show kovactl get InternetGatewayDevice.X_KOVA_LTE.Cell.
