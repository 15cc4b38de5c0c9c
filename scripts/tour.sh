#!/usr/bin/env bash
# Prints the README's tours by running them on scratch devices; --write puts them into the README. Needs the release
# build; the second takes the port 7547.
set -euo pipefail
cd "$(dirname "$0")/.."

export PATH=$PWD/build/release/bin:$PATH
scratch=$(mktemp -d)
export KOVA_DEVICE=$scratch/device
export HOME=$scratch/home
mkdir "$HOME"
trap 'for device in "$scratch/device" "$HOME/second" "$HOME/managed"; do kovactl --device "$device" device down >/dev/null 2>&1 || true; done
      rm -rf "$scratch"' EXIT

repository=$PWD

# Runs each line of the input where it is to be run.
walk() {
  while IFS= read -r command; do
    printf '    $ %s\n' "$command"
    (cd "$1" && bash -c "$command" 2>&1) | sed "s#$KOVA_DEVICE#~/.local/state/kova#; s#$HOME#~#; s/^/    /; s/ *$//" || true
  done
}

tour() {
  walk "$HOME" <<'COMMANDS'
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

managed_tour() {
  export KOVA_DEVICE=$HOME/managed
  walk "$repository" <<'COMMANDS'
LAN=InternetGatewayDevice.LANDevice.1.X_KOVA_LAN; tests/agent/acs.py --sessions 2 set=$LAN.DHCPLeaseTime=5:unsignedInt set=$LAN.DHCPLeaseTime=3600:unsignedInt get=$LAN.DHCPLeaseTime add=InternetGatewayDevice.Layer3Forwarding.X_KOVA_Route. reboot >~/acs.txt 2>&1 & sleep 2
kovactl device up --serial MANAGED-0001 --acs http://127.0.0.1:7547/
while [ "$(grep -c reports ~/acs.txt)" -lt 2 ]; do sleep 1; done; cat ~/acs.txt
kovactl device status | tail -n 4
kovactl get X_KOVA_LAN.DHCPLeaseTime
kovactl log --kind cwmp | cut -c1-120
COMMANDS
}

# The section with this heading becomes what stands in the file.
put_into_readme() {
  awk -v heading="## $1" -v text="$2" '
    $0 == heading { print; print ""; while ((getline line < text) > 0) print line; print ""; skip = 1; next }
    /^## / { skip = 0 }
    !skip { print }' README.md >"$scratch/README.md"
  cp "$scratch/README.md" README.md
}

if [ "${1:-}" = --write ]; then
  tour >"$scratch/tour"
  managed_tour >"$scratch/managed"
  put_into_readme "A tour" "$scratch/tour"
  put_into_readme "A tour with a server" "$scratch/managed"
else
  tour
  managed_tour
fi
