#!/usr/bin/env bash
# The first minutes of a newcomer: a bare Debian 12 with nothing but git, a clone of this repository, ./brenvolt VERB.
# Prints the seconds of each. Needs root and mmdebstrap; says "skipped" without them.
#   tests/newcomer.sh [REVISION [VERB...]]     HEAD, demo and test when not given
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
revision=${1:-HEAD}
shift || true
[ $# -gt 0 ] || set -- demo test
skip() {
  echo "skipped: $*"
  exit 0
}
[ "$(id -u)" -eq 0 ] || skip "only root can make a root"
command -v mmdebstrap >/dev/null || skip "no mmdebstrap"

root=$(mktemp -d)
trap 'umount -q "$root/proc" "$root/dev/pts"; rm -rf --one-file-system "$root"' EXIT
mmdebstrap --quiet --variant=minbase --include=git,ca-certificates bookworm "$root" ||
  skip "a fresh root cannot be made; see whether a mirror can be reached"
mount -t proc proc "$root/proc" && mount -t devpts devpts "$root/dev/pts" -o newinstance,ptmxmode=0666 ||
  echo "no /proc or no pseudo-terminals in the root: what needs them is skipped"
git bundle create -q "$root/home/repository" "$(git rev-parse "$revision")^{commit}" 2>/dev/null ||
  git bundle create -q "$root/home/repository" --all
commit=$(git rev-parse "$revision")
in_root() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 "$@"; }
in_root git -c advice.detachedHead=false clone -q --no-checkout /home/repository /root/brenvolt &&
  in_root git -C /root/brenvolt -c advice.detachedHead=false checkout -q "$commit" || exit 1
for verb in "$@"; do
  start=$SECONDS
  in_root /root/brenvolt/brenvolt "$verb" >"$root/$verb.log" 2>&1
  code=$?
  printf '%s %s: %d s, exit code %d, out/ %s\n' "$revision" "$verb" $((SECONDS - start)) "$code" \
    "$(du -sh "$root/root/brenvolt/out" 2>/dev/null | cut -f1)"
  [ $code -eq 0 ] || tail -n 20 "$root/$verb.log"
done
