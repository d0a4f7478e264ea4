#!/bin/bash
# Opens the same large report in kestal and in other viewers, one after the other on a screen of its own, and prints the
# CPU time until each is idle, its peak memory, and both as ratios.
#
#   bench/view_peers.sh [MEGABYTES...]        100 and 1000 without arguments
#
# Programs that are not installed are left out: apt-get install glogg scite xvfb openbox
set -eu
cd "$(dirname "$0")/.."
kestal=$PWD/build/release/bin/kestal
[ -x "$kestal" ] || { echo "build first: cmake --preset release && cmake --build --preset release" >&2; exit 1; }

[ -n "${GENUTIL_ON_SCREEN:-}" ] || GENUTIL_ON_SCREEN=1 exec tests/on_screen.sh "$PWD/bench/view_peers.sh" "$@"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The other viewers shall start as on a new user's desktop.
export HOME=$work XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data XDG_RUNTIME_DIR=$work

# A log of an adjustment, as long as it is asked for, from one part written again and again.
make_report() {
    awk 'BEGIN { for (i = 1; i <= 20000; i++)
        printf "%8d  STN%05d  STN%05d  %12.4f  %12.4f  %9.4f  %7.4f  %6.2f\r\n", i, i % 977, (i * 7) % 977,
            300000 + i * 1.2345, 6100000 + i * 0.9876, i % 300 / 7, i % 13 / 1000, i % 41 / 13 }' >"$work/part"
    local part size=$(($1 * 1000000))
    part=$(stat -c %s "$work/part")
    for ((done = 0; done < size; done += part)); do cat "$work/part"; done | head -c "$size" >"$2"
}

ticks() { # of the process and its children, which may have ended
    local stat fields
    stat=$(cat "/proc/$1/stat" 2>/dev/null) || return 1
    read -ra fields <<<"${stat##*) }"
    echo $((fields[11] + fields[12] + fields[13] + fields[14]))
}

# Prints "seconds kilobytes" of the command once it has used no CPU time for two seconds.
measure() {
    "$@" >/dev/null 2>&1 &
    local pid=$! last=-1 still=0 now peak=0
    while [ "$still" -lt 20 ]; do
        sleep 0.1
        now=$(ticks "$pid") || break
        peak=$(awk '/VmHWM/ { print $2 }' "/proc/$pid/status")
        # A blinking caret is not work.
        if [ $((now - last)) -le 1 ]; then still=$((still + 1)); else still=0 last=$now; fi
    done
    echo "$(awk -v t="$last" -v hz="$(getconf CLK_TCK)" 'BEGIN { print t / hz }') $peak"
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
}

[ $# -gt 0 ] || set -- 100 1000
for size in "$@"; do
    report=$work/report.log
    make_report "$size" "$report"
    cat "$report" >/dev/null
    echo "$size MB report"
    printf '%-8s %10s %14s %14s %12s\n' program 'CPU s' 'peak MB' 'peak/file' 'CPU/kestal'
    own=
    for program in kestal glogg scite; do
        case $program in
        kestal) command=("$kestal" view "$report") ;;
        *) command -v $program >/dev/null || continue; command=("$program" "$report") ;;
        esac
        read -r seconds kilobytes < <(measure "${command[@]}")
        own=${own:-$seconds}
        awk -v p="$program" -v s="$seconds" -v k="$kilobytes" -v f="$size" -v o="$own" 'BEGIN {
            printf "%-8s %10.2f %14.0f %14.2f %12.2f\n", p, s, k * 1.024 / 1000, k * 1.024 / 1000 / f, s / o }'
    done
done
