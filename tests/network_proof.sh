#!/usr/bin/env bash
# A history file in a folder on the network: programs on two mounts of it, as on two machines, save and delete at the same
# moment and are killed while they save. Needs root and GlusterFS (glusterfs-server), the network file system with locks
# across machines that runs without a module of the kernel; says "skipped" without them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
test=$(realpath out/bin/project_test)
skip() {
  echo "skipped: no network folder can be mounted here: $*"
  exit
}
[ "$(id -u)" -eq 0 ] || skip "only root can"
[ -e /dev/fuse ] || skip "/dev/fuse is missing"
for program in glusterfsd glusterfs ip setfattr; do
  command -v "$program" >/dev/null || skip "$program is missing"
done
if [ "${NETWORK_PROOF_INSIDE:-}" != 1 ]; then
  NETWORK_PROOF_INSIDE=1 exec unshare -mn "$0" "$@"
fi

ip link set lo up
folder=$(mktemp -d)
finish() {
  umount "$folder/first" "$folder/second" 2>/dev/null || true
  for file in "$folder"/*.pid; do kill "$(cat "$file")" 2>/dev/null || true; done
  rm -rf "$folder"
}
trap finish EXIT
mkdir "$folder/brick" "$folder/first" "$folder/second"
setfattr -n trusted.glusterfs.volume-id -v 0x5b6ad2b37c9a4a3d9d5a0f2ab8a3c111 "$folder/brick"
cat >"$folder/server.vol" <<VOLUME
volume posix
  type storage/posix
  option directory $folder/brick
  option volume-id 5b6ad2b3-7c9a-4a3d-9d5a-0f2ab8a3c111
end-volume
volume locks
  type features/locks
  subvolumes posix
end-volume
volume brick
  type performance/io-threads
  subvolumes locks
end-volume
volume server
  type protocol/server
  option transport-type tcp
  option transport.socket.bind-address 127.0.0.1
  option transport.socket.listen-port 24911
  option auth.addr.brick.allow 127.0.0.1
  subvolumes brick
end-volume
VOLUME
cat >"$folder/client.vol" <<VOLUME
volume client
  type protocol/client
  option transport-type tcp
  option remote-host 127.0.0.1
  option remote-port 24911
  option remote-subvolume brick
end-volume
VOLUME
glusterfsd -f "$folder/server.vol" -l "$folder/server.log" -p "$folder/server.pid"
sleep 1
for mount in first second; do
  # Names and sizes from the server, not from the memory of the machine.
  glusterfs --entry-timeout=0 --attribute-timeout=0 --negative-timeout=0 -f "$folder/client.vol" -l "$folder/$mount.log" -p "$folder/$mount.pid" "$folder/$mount"
done
for _ in $(seq 20); do mountpoint -q "$folder/second" && break; sleep 0.5; done
mountpoint -q "$folder/first" && mountpoint -q "$folder/second" || { echo "the folder cannot be mounted" >&2; exit 1; }

echo "on two mounts of a network folder:"
TMPDIR=$folder/first BRENVOLT_PROVE=1 BRENVOLT_PROVE_OTHER=$folder/second \
  "$test" -tc="programs that save*,a program that is killed*"
