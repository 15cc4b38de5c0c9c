#!/usr/bin/env bash
# Usage: package_test.sh CMAKE BUILD-DIRECTORY EXAMPLES-DIRECTORY C-COMPILER LIBDIR
set -euo pipefail
cmake=$1 build=$2 examples=$3 cc=$4 libdir=$5
scratch=$(mktemp -d)
export KOVA_DEVICE=$scratch/device
trap '"$scratch/usr/bin/kovactl" device down >/dev/null 2>&1 || true; rm -rf "$scratch"' EXIT

expect() { # expect WHAT EXPECTED ACTUAL
  [ "$2" = "$3" ] || { printf '%s: expected\n%s\nbut got\n%s\n' "$1" "$2" "$3"; exit 1; }
}

"$cmake" --install "$build" --prefix "$scratch/usr" >"$scratch/install.log"
"$cmake" -S "$examples" -B "$scratch/with-cmake" -DCMAKE_PREFIX_PATH="$scratch/usr" -DCMAKE_C_COMPILER="$cc" \
  >"$scratch/configure.log"
"$cmake" --build "$scratch/with-cmake" >"$scratch/build.log"

export PKG_CONFIG_PATH=$scratch/usr/$libdir/pkgconfig
"$cc" "$examples/agent.c" -o "$scratch/with-pkg-config" \
  $(pkg-config --cflags --libs kova) -Wl,-rpath,"$scratch/usr/$libdir"

values='LAN.IPAddress      192.168.7.1
LAN.DHCPPoolStart  192.168.7.100
LAN.DHCPPoolEnd    192.168.7.200'
refused='9007 Invalid parameter value: LAN.IPAddress;LAN.DHCPPoolStart;LAN.DHCPPoolEnd'
"$scratch/usr/bin/kovactl" nvram set lan_netmask=255.255.255.0 dhcpEnabled=1 2>"$scratch/created"
for agent in "$scratch/with-cmake/agent" "$scratch/with-pkg-config"; do
  expect "a request" "$values" "$("$agent" 192.168.7.1 192.168.7.100 192.168.7.200)"
  status=0
  said=$("$agent" 192.168.7.1 192.168.8.100 192.168.8.200 2>&1 >"$scratch/values") || status=$?
  expect "the status of a refused request" 1 "$status"
  expect "its fault" "$refused" "$said"
  expect "what it left" "$values" "$(cat "$scratch/values")"
done

# The table of the accessors, in a program that reads by path.
kovactl=$scratch/usr/bin/kovactl
{
  "$kovactl" model --format c
  cat <<'END'
#include <stdio.h>
#include <string.h>
int main(int count, char **paths) {
  char text[257] = "";
  for (int i = 1; i < count; i++)
    for (unsigned n = 0; n < kova_parameter_count; n++)
      if (strcmp(kova_parameters[n].path, paths[i]) == 0 && kova_parameters[n].get(text, 256) == 0) puts(text);
  for (unsigned n = 0; n < kova_list_count; n++)
    if (strstr(kova_lists[n].object, "X_KOVA_Route.") && kova_lists[n].add() + kova_lists[n].get(1, text, 256) == 0) puts(text);
}
END
} >"$scratch/table.c"
"$cc" -std=c99 -Wall -Wextra -pedantic -Werror "$scratch/table.c" -o "$scratch/table" \
  $(pkg-config --cflags --libs kova) -Wl,-rpath,"$scratch/usr/$libdir"
device=InternetGatewayDevice
paths="$device.LANDevice.1.X_KOVA_LAN.IPAddress $device.WANDevice.1.WANConnectionDevice.1.WANIPConnection.1.X_KOVA_DMZEnable"
expect "values by path" "$("$kovactl" get -v $paths; echo ' , , ,0')" "$("$scratch/table" $paths)"
expect "the rows after it" 1 "$("$kovactl" get -v $device.Layer3Forwarding.X_KOVA_RouteNumberOfEntries)"
