#!/usr/bin/env bash
# one_machine_cluster.sh FOLDER COMMAND...: runs a command while a Slurm cluster of this machine alone is there, with all
# of its files in the folder. The exit code is 77 where Slurm is not installed or cannot be run.
set -euo pipefail
folder=$1
shift
for program in munged mungekey slurmctld slurmd sbatch; do
  command -v "$program" >/dev/null || [ -x "/usr/sbin/$program" ] || exit 77
done
PATH=$PATH:/usr/sbin
[ "$(id -u)" -eq 0 ] || exit 77 # the daemons change to the user of each job

mkdir -p "$folder/state" "$folder/spool"
chmod 755 "$folder"
node=$(hostname -s)
port=$((20000 + $$ % 20000 * 2))
cat >"$folder/slurm.conf" <<CONF
ClusterName=test
SlurmctldHost=$node(127.0.0.1)
SlurmctldPort=$port
SlurmdPort=$((port + 1))
SlurmUser=root
AuthType=auth/munge
AuthInfo=socket=$folder/munge.socket
CryptoType=crypto/munge
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SchedulerParameters=sched_interval=1,batch_sched_delay=0
StateSaveLocation=$folder/state
SlurmdSpoolDir=$folder/spool
SlurmctldPidFile=$folder/slurmctld.pid
SlurmdPidFile=$folder/slurmd.pid
ReturnToService=2
MpiDefault=none
NodeName=$node NodeAddr=127.0.0.1 CPUs=$(nproc) State=UNKNOWN
PartitionName=all Nodes=ALL Default=YES MaxTime=INFINITE State=UP
CONF
export SLURM_CONF=$folder/slurm.conf

pids=()
stop() { for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done; wait 2>/dev/null || true; }
trap stop EXIT
mungekey --create --keyfile="$folder/munge.key" --bits=1024
munged --foreground --force --socket="$folder/munge.socket" --key-file="$folder/munge.key" \
  --pid-file="$folder/munge.pid" --log-file="$folder/munge.log" --seed-file="$folder/munge.seed" >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 50); do [ -S "$folder/munge.socket" ] && break; sleep 0.1; done
slurmctld -D -L "$folder/slurmctld.log" >/dev/null 2>&1 &
pids+=($!)
slurmd -D -N "$node" -L "$folder/slurmd.log" >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 100); do
  sinfo -h -o %T 2>/dev/null | grep -q idle && break
  sleep 0.2
done
sinfo -h -o %T 2>/dev/null | grep -q idle || { tail -n 5 "$folder"/slurm*.log >&2; exit 77; }
"$@"
