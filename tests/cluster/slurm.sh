#!/usr/bin/env bash
# cluster/archive.sbatch on a real Slurm of one node, in a temporary folder, as the user at hand.
# Argument: the program. Ends only what it began.
set -euo pipefail
intake=$(realpath "$1")
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")
script=$here/../../cluster/archive.sbatch
PATH=$PATH:/usr/sbin:/sbin
scratch=$(mktemp -d)
declare -A began=()
finish() {
    local status=$?
    for pid in "${began[@]}"; do kill "$pid" 2>/dev/null || true; done
    for pid in "${began[@]}"; do wait "$pid" 2>/dev/null || true; done
    if ((status)); then tail -n 20 "$scratch"/*.log >&2; fi
    rm -rf "$scratch"
}
trap finish EXIT
cd "$scratch"
chmod 755 .

# begin NAME COMMAND...: a process in the background, known by its name.
begin() {
    local name=$1
    shift
    "$@" >>"$name.log" 2>&1 &
    began[$name]=$!
}
# until_true SECONDS WHAT COMMAND...
until_true() {
    local end=$((SECONDS + $1)) what=$2
    shift 2
    until "$@" >/dev/null 2>&1; do
        if ((SECONDS > end)); then
            echo "$what: not within time" >&2
            exit 1
        fi
        sleep 0.2
    done
}

host=$(hostname -s)
read -r control node < <(python3 -c '
import socket
sockets = [socket.socket() for _ in range(2)]
for each in sockets: each.bind(("127.0.0.1", 0))
print(*(each.getsockname()[1] for each in sockets))')
mkdir state spool munge
chmod 755 munge
head -c 1024 /dev/urandom >munge/key
chmod 600 munge/key
cat >slurm.conf <<END
ClusterName=check
SlurmctldHost=$host(127.0.0.1)
SlurmctldPort=$control
SlurmdPort=$node
AuthType=auth/munge
AuthInfo=socket=$scratch/munge/socket,cred_expire=5
CredType=cred/munge
SlurmUser=$(id -un)
SlurmdUser=$(id -un)
StateSaveLocation=$scratch/state
SlurmdSpoolDir=$scratch/spool
SlurmctldPidFile=$scratch/slurmctld.pid
SlurmdPidFile=$scratch/slurmd.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
MpiDefault=none
ReturnToService=2
KillWait=10
SchedulerParameters=batch_sched_delay=0,sched_min_interval=0
NodeName=$host NodeAddr=127.0.0.1 CPUs=$(nproc) State=UNKNOWN
PartitionName=all Nodes=ALL Default=YES MaxTime=INFINITE State=UP
END
export SLURM_CONF=$scratch/slurm.conf
begin munged munged --foreground --force --key-file="$scratch/munge/key" \
    --socket="$scratch/munge/socket" --pid-file="$scratch/munge/pid" \
    --seed-file="$scratch/munge/seed" --log-file="$scratch/munge/log"
until_true 20 munged test -S munge/socket
begin slurmctld slurmctld -D -f "$SLURM_CONF"
until_true 30 slurmctld scontrol ping
begin slurmd slurmd -D -f "$SLURM_CONF" -N "$host"
is_idle() { [[ $(sinfo -h -o %T) == idle ]]; }
until_true 60 slurmd is_idle

python3 "$here/archive.py" make in
shards=8
job=$(INPUT=in OUT=out SHARDS=$shards OPTIONS='--to csv' INTAKE=$intake \
    sbatch --parsable --array=0-$((shards - 1)) --mem-per-cpu=0 --output=task-%a.log "$script")

# In the middle of it the node's daemon is killed, and begins anew.
has_lines() { (($(cat out/report.*.jsonl | wc -l) > 20)); }
until_true 120 "The first lines" has_lines
kill -KILL "${began[slurmd]}"
wait "${began[slurmd]}" 2>/dev/null || true
sleep 1
begin slurmd slurmd -D -f "$SLURM_CONF" -N "$host"
until_true 60 "slurmd, once more" scontrol show node "$host"
# ... and what is at work is taken from the node and queued again. What was at work when the daemon was
# killed may be done by now; then it is one of the tasks that wait.
requeued=0
queue_again() {
    local task
    for task in $(squeue -h -t RUNNING -j "$job" -o %i); do
        if scontrol requeue "$task"; then requeued=$((requeued + 1)); fi
    done
    ((requeued > 0))
}
until_true 60 "A task at work" queue_again
echo "$requeued tasks queued again with $(cat out/report.*.jsonl | wc -l) lines written"

find in -name '*.e00' >list
sum=$(OUT=out SHARDS=$shards SUM=1 LIST=list INTAKE=$intake \
    sbatch --parsable --array=0 --mem-per-cpu=0 --dependency=afterany:"$job" --output=sum.log "$script")
is_over() { [[ -z $(squeue -h -j "$job,$sum" 2>&1) ]]; }
until_true 240 "The jobs" is_over
python3 "$here/archive.py" hold in out
grep -q "^3000 inputs" sum.log
if grep -q Missing sum.log; then
    cat sum.log >&2
    exit 1
fi
