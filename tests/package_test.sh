#!/usr/bin/env bash
# The packages in a fresh Debian 12: installed, used and removed. Needs root, mmdebstrap and a mirror; says "skipped"
# without them. Argument: the folder of the packages.
set -uo pipefail
packages=$(realpath "${1:-out/packages}")
skip() {
  echo "skipped: $*"
  exit 0
}
[ "$(id -u)" -eq 0 ] || skip "only root can make a root"
command -v mmdebstrap >/dev/null || skip "no mmdebstrap"
ls "$packages"/*.deb >/dev/null 2>&1 || skip "no packages in $packages; ./brenvolt package makes them"

failures=0
fail() {
  failures=$((failures + 1))
  echo "$*"
}
if command -v lintian >/dev/null; then
  lintian --fail-on error "$packages"/*.deb || fail "lintian reports errors"
else
  echo "skipped: no lintian"
fi

root=$(mktemp -d)
trap 'umount -q "$root/proc"; rm -rf --one-file-system "$root"' EXIT
mmdebstrap --quiet --variant=apt --include=man-db,xvfb,xauth,fonts-dejavu-core bookworm "$root" ||
  skip "a fresh root cannot be made; see whether a mirror can be reached"
# Pages of the manual are left out of slim roots.
rm -f "$root"/etc/dpkg/dpkg.cfg.d/*
mkdir "$root/packages"
cp "$packages"/*.deb "$root/packages/"
in_root() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
list() { (cd "$root" && find . -xdev -path ./packages -prune -o -path ./proc -prune -o -path ./sys -prune -o -path ./var -prune -o -print | LC_ALL=C sort); }

in_root apt-get update -qq
mount -t proc proc "$root/proc" 2>/dev/null || echo "no /proc in the root; the programs do without"
list >"$root/packages/before"
in_root bash -c 'apt-get install -y -qq /packages/*.deb' >"$root/packages/install.log" 2>&1 ||
  { tail -n 20 "$root/packages/install.log"; fail "the packages cannot be installed"; }
in_root brenvolt site new /root/plant || fail "brenvolt site new"
in_root brenvolt draw --site /root/plant --circuit "Three-phase motors" --type "Direct on line" --history "Pump 10 HP" --out /root/motor.json ||
  fail "brenvolt draw"
in_root bash -c 'cd /root && xvfb-run -a brenvolt-gui --site plant --screenshot /root/window.png motor.json' || fail "brenvolt-gui"
[ -s "$root/root/window.png" ] || fail "no picture of the window"
in_root bash -c 'man -P cat brenvolt-draw' | grep -q 'draw a circuit' || fail "man brenvolt-draw"
[ -z "${2:-}" ] || cp "$root/root/window.png" "$2"

in_root bash -c 'apt-get purge -y -qq brenvolt brenvolt-gui brenvolt-dev' >/dev/null 2>&1 || fail "the packages cannot be removed"
left=$(comm -13 "$root/packages/before" <(list) | grep -iE 'brenvolt' | grep -v '^./root/')
[ -z "$left" ] || fail "left after removal:" "$left"
[ -s "$root/root/motor.json" ] || fail "the removal took what the user made"

if [ $failures -ne 0 ]; then exit 1; fi
echo "all as expected"
