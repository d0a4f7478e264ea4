#!/bin/bash
# Reads folders of many jobs, each a file of its own, from their files to the rows of the list, and prints the processor
# time and its ratio to that of reading the same bytes (cat) and, for a hundred of the jobs, of the mdb tools.
#
#   bench/job_list.sh [JOBS...]        500 1000 2000 4000 and 32767 without arguments; these take 8 GB of disk
#
# GENUTIL_BIN: the folder of job_bench and kestal, build/release/bin unless it is set. Without mdbtools their lines are
# left out: apt-get install mdbtools
set -eu
cd "$(dirname "$0")/.."
bin=${GENUTIL_BIN:-build/release/bin}
[ -x "$bin/job_bench" ] || { echo "build first: cmake --preset release && cmake --build --preset release" >&2; exit 1; }
bin=$(cd "$bin" && pwd)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Those that are whole: with a table of details.
jet=() sqlite=()
for file in samples/jobs/*; do
    case ${file##*/} in bad_* | empty_* | NoDetails*) continue ;; esac
    if head -c 20 "$file" | grep -qa 'Standard Jet DB'; then jet+=("$file"); fi
    if head -c 20 "$file" | grep -qa 'SQLite format'; then sqlite+=("$file"); fi
done

# make_jobs FOLDER COUNT SAMPLE...
make_jobs() {
    local folder=$1 count=$2 sample=0 number names
    shift 2
    mkdir -p "$folder"
    for file; do
        names=()
        for ((number = sample++; number < count; number += $#)); do
            printf -v name '%s/job%05d.mdb' "$folder" "$number"
            names+=("$name")
        done
        [ ${#names[@]} -eq 0 ] || tee "${names[@]}" <"$file" >/dev/null
    done
}

# Processor seconds of the command, the least of three times.
cpu() {
    local TIMEFORMAT='%U %S' time least=
    for time in 1 2 3; do
        time=$({ time "$@" >/dev/null 2>&1; } 2>&1 | awk '{ print $1 + $2 }')
        least=$(awk -v a="${least:-$time}" -v b="$time" 'BEGIN { print a < b ? a : b }')
    done
    echo "$least"
}

read_bytes() { (cd "$1" && cat -- *.mdb); }

mdb_tools() {
    local file
    for file in $(seq -f "$1/job%05g.mdb" 0 99); do
        mdb-tables "$file"
        mdb-export "$file" JobDetails
        mdb-count "$file" AlphaIds
    done
}

line() { # NAME JOBS SECONDS CAT
    awk -v n="$1" -v j="$2" -v s="$3" -v c="$4" 'BEGIN {
        printf "%-22s %7d %9.3f %12.1f %12.2f\n", n, j, s, s / j * 1e6, s / c }'
}

# measure NAME FOLDER
measure() {
    local name=$1 folder=$2 bytes jobs reports seconds rest
    bytes=$(cpu read_bytes "$folder")
    read -r jobs reports seconds rest < <("$bin/job_bench" "$folder/" 3)
    [ "$reports" = 0 ] || echo "$reports jobs could not be read" >&2
    line "$name" "$jobs" "$seconds" "$bytes"
    own=$(awk -v s="$seconds" -v j="$jobs" 'BEGIN { print s / j }')
    line '  cat' "$jobs" "$bytes" "$bytes"
}

printf '%-22s %7s %9s %12s %12s\n' '' jobs 'CPU s' 'us/job' 'to cat'
[ $# -gt 0 ] || set -- 500 1000 2000 4000 32767
for count; do
    make_jobs "$work/jobs" "$count" "${jet[@]}"
    measure 'Jet jobs' "$work/jobs"
    if [ -x "$bin/kestal" ] && "$bin/kestal" jobs "$work/jobs" --format tsv >/dev/null 2>&1; then
        seconds=$(cpu "$bin/kestal" jobs "$work/jobs" --format tsv)
        line '  kestal jobs' "$count" "$seconds" "$(cpu read_bytes "$work/jobs")"
    fi
done
if command -v mdb-export >/dev/null; then
    tools=$(cpu mdb_tools "$work/jobs")
    awk -v t="$tools" -v o="$own" 'BEGIN {
        printf "mdb tools: %.0f us a job, %.0f times as long\n", t / 100 * 1e6, t / 100 / o }'
fi
rm -rf "$work/jobs"
make_jobs "$work/jobs" 2000 "${sqlite[@]}"
measure 'SQLite jobs' "$work/jobs"
