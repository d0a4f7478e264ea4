#!/bin/bash
# What the engine of the help browser would cost at every start if it were linked instead of loaded with the first
# page: runs the host to the end of a short command, as it is and with the engine's library loaded beforehand, by turns,
# and prints the medians of time and memory.
#
#   bench/start_up.sh [RUNS]        21 without an argument
#
# GENUTIL_BIN: the folder of kestal, build/release/bin unless it is set. Needs python3.
set -eu
cd "$(dirname "$0")/.."
bin=${GENUTIL_BIN:-build/release/bin}
runs=${1:-21}
[ -x "$bin/kestal" ] || { echo "build first: cmake --preset release && cmake --build --preset release" >&2; exit 1; }
engine=$(ldconfig -p | awk '$1 == "libQt6WebEngineWidgets.so.6" { print $NF; exit }')
[ -n "$engine" ] || { echo "libQt6WebEngineWidgets.so.6 is not installed" >&2; exit 1; }
if ldd "$bin/kestal" "$bin/../lib/libk_genutil.so" | grep -q WebEngine; then
    echo "the engine is linked" >&2
    exit 1
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/jobs"
cp "samples/jobs/Smith Farm.mdb" "$work/jobs"
export KESTAL_SETTINGS="$work/kestal.ini" K_GENUTIL_REGISTRY="$work/registry.ini" QT_QPA_PLATFORM=offscreen

# Each run: its milliseconds and the most memory that it had.
python3 - "$runs" "$engine" "$bin/kestal" jobs "$work/jobs" <<'END'
import os, statistics, subprocess, sys, time
runs, engine, command = int(sys.argv[1]), sys.argv[2], sys.argv[3:]
ways = {"loaded later": {}, "linked": {"LD_PRELOAD": engine}}
figures = {way: [] for way in ways}
for _ in range(runs):
    for way, variables in ways.items():
        begin = time.perf_counter()
        child = subprocess.Popen(command, env=os.environ | variables, stdout=subprocess.DEVNULL)
        _, status, used = os.wait4(child.pid, 0)
        if status != 0:
            sys.exit("kestal has failed")
        figures[way].append(((time.perf_counter() - begin) * 1000, used.ru_maxrss / 1024))
for way, each in figures.items():
    print(f"{way:13} {statistics.median(t for t, _ in each):7.1f} ms {statistics.median(m for _, m in each):7.1f} MB")
END
