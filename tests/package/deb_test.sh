#!/usr/bin/env bash
# The Debian packages: made, installed together in a root of their own, and used there.
# Usage: deb_test.sh CMAKE CPACK BUILD-DIRECTORY SOURCE-DIRECTORY VERSION
set -euo pipefail
export LC_ALL=C
cmake=$1 cpack=$2 build=$3 source=$4 version=$5
scratch=$(mktemp -d)
root=$scratch/root
export KOVA_DEVICE=$scratch/device KOVA_FEED=off
trap '"$root/usr/bin/kovactl" device down >/dev/null 2>&1 || true; rm -rf "$scratch"' EXIT

expect() { # expect WHAT EXPECTED ACTUAL
  [ "$2" = "$3" ] || { printf '%s: expected\n%s\nbut got\n%s\n' "$1" "$2" "$3"; exit 1; }
}

# Made by someone whose files are private, for everybody.
(umask 077 && "$cpack" --config "$build/CPackConfig.cmake" -B "$scratch/packages" -D CPACK_DEBIAN_COMPRESSION_TYPE=gzip) \
  >"$scratch/cpack.log" 2>&1 || { cat "$scratch/cpack.log"; exit 1; }
arch=$(dpkg --print-architecture)
expect "the packages" "kova-tools_${version}_$arch.deb libkova-dev_${version}_$arch.deb libkova1_${version}_$arch.deb" \
  "$(cd "$scratch/packages" && echo *.deb)"

# dpkg refuses a file that two packages have. The filters of this machine do not count.
mkdir -p "$root"/var/lib/dpkg/{info,updates}
touch "$root/var/lib/dpkg/status"
dpkg --root="$root" --log="$scratch/dpkg.log" --path-include='/usr/*' --force-not-root --force-bad-path --force-depends \
  --install "$scratch"/packages/*.deb >"$scratch/install.log" 2>&1 || { cat "$scratch/install.log"; exit 1; }
query() { dpkg-query --admindir="$root/var/lib/dpkg" "$@"; }
owner() { query --search "*/$1" | sed 's/:.*//'; }

expect "what libkova-dev depends on" "libkova1 (= $version)" "$(query -W -f '${Depends}' libkova-dev)"
expect "what kova-tools depends on first" "libkova1 (= $version), libc6" "$(query -W -f '${Depends}' kova-tools | sed 's/ (>=.*//')"
expect "what kova-tools recommends" "iputils-ping, traceroute" "$(query -W -f '${Recommends}' kova-tools)"
expect "the store's library among what libkova1 depends on" "liblmdb0" \
  "$(query -W -f '${Depends}' libkova1 | grep -oE 'liblmdb0|libpugixml1v5')"
expect "control files of libkova1" "md5sums shlibs triggers" "$(query --control-list libkova1 | sort | xargs)"

expect "the owner of the library" libkova1 "$(owner libkova.so.1)"
expect "the owner of the library's neighbours" libkova1 "$(owner kova/libtarn_nvram.so.1)"
expect "the owner of the link that linkers follow" libkova-dev "$(owner libkova.so)"
expect "the owner of the redirection" kova-tools "$(owner kova/libkova_redirect.so)"

# The three are the whole installation.
"$cmake" --install "$build" --prefix "$scratch/whole/usr" >"$scratch/whole.log"
files() { (cd "$1" && find usr ! -type d ! -path 'usr/share/doc/*' | sort); }
expect "what packages lack (<) or have alone (>)" "" "$(diff <(files "$scratch/whole") <(files "$root") || true)"
expect "directories that not everybody can enter" "" "$(find "$root/usr" -type d ! -perm 755)"
expect "versions of the change logs" "$version $version $version" \
  "$(for log in "$root"/usr/share/doc/*/changelog.gz; do zcat "$log" | sed -n '1s/^libkova (\(.*\)).*/\1/p'; done | xargs)"

expect "files that name the build machine" "" "$(grep -rlF -e "$build" -e "$source" "$root/usr" || true)"
for file in $(find "$root/usr" -type f); do
  readelf -h "$file" >/dev/null 2>&1 || continue
  expect "search paths of $file" "" "$(readelf -d "$file" | grep -E 'R(UN)?PATH' | grep -vE '\[\$ORIGIN[^:]*(:\$ORIGIN[^:]*)?\]' || true)"
  expect "symbol tables of $file" "" "$(readelf -SW "$file" | grep -F .symtab || true)"
  expect "libraries of $file that are not in its root" "" \
    "$(ldd "$file" | grep -E 'not found|lib(kova|tarn|ucfg|webs|lte)' | grep -vF "=> $root/" || true)"
done

# kovactl finds its programs and libraries from where it lies itself.
kovactl=$root/usr/bin/kovactl
lan=InternetGatewayDevice.LANDevice.1.X_KOVA_LAN
"$kovactl" device up >"$scratch/up"
"$kovactl" set $lan.DHCPLeaseTime=3600 >"$scratch/set"
expect "a value that was set" "$lan.DHCPLeaseTime  3600" "$("$kovactl" get $lan.DHCPLeaseTime)"
expect "what the service daemon logged" restart_dhcp_server "$("$kovactl" log --tail 1 | awk 'END { print $NF }')"
expect "the service daemon" "$root/usr/libexec/kova/kova-serviced" \
  "$(readlink "/proc/$(cat "$KOVA_DEVICE/run/serviced.pid")/exe")"
"$kovactl" device down >"$scratch/down"
expect "the device" "device          down" "$("$kovactl" device status | sed -n 2p)"

if command -v systemd-analyze >/dev/null; then
  sed "s|=kovactl |=$kovactl |" "$root/usr/lib/systemd/system/kova@.service" >"$scratch/kova@.service"
  systemd-analyze verify --man=no "$scratch/kova@x.service"
fi

man -P cat -l "$root/usr/share/man/man1/kovactl.1.gz" | grep -q '^SYNOPSIS'
