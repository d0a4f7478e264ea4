#!/bin/bash
# Prints the same report of 70,212 lines to PDF with kestal and with enscript and ps2pdf, in turns, and prints the
# processor time (user and system), the time that passes and the peak memory, the least times of all runs, with their
# ratio to kestal's. The toolkit's PDF writer alone (print_bench) is the floor. Then the peak memory with a report ten
# times as long, of which reading takes the text twice for a moment and printing a few megabytes whatever the length.
#
#   bench/print_peers.sh [RUNS]        5 without an argument
#
# GENUTIL_BIN: the folder of kestal and print_bench, build/release/bin unless it is set. Programs that are not installed
# are left out: apt-get install enscript ghostscript time
set -eu
cd "$(dirname "$0")/.."
bin=${GENUTIL_BIN:-build/release/bin}
[ -x "$bin/kestal" ] || { echo "build first: cmake --preset release && cmake --build --preset release" >&2; exit 1; }
[ -x /usr/bin/time ] || { echo "install first: apt-get install time" >&2; exit 1; }
bin=$(cd "$bin" && pwd)
runs=${1:-5}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=$work
chmod 700 "$work"

# make_report LINES FILE: the long lines of the sample reports, again and again.
make_report() {
    cat samples/network.log samples/inverse.inv samples/traverse.sum samples/points.rep | tr -d '\r' |
        awk -v lines="$1" 'length > 77 && length <= 101 { line[count++] = $0 }
            END { for (i = 0; i < lines; ++i) print line[i % count] }' >"$2"
}

# Of one run of PROGRAM: seconds of the processor, seconds that pass, kilobytes.
measure() { # PROGRAM REPORT
    local command
    case $1 in
    kestal) command=("$bin/kestal" print "$2" --pdf "$work/out.pdf") ;;
    floor) command=("$bin/print_bench" "$2" "$work/out.pdf") ;;
    # As large as kestal prints lines of this length.
    enscript) command=(sh -c 'enscript -q -B -M A4 -f Courier-Bold9 -o - "$1" | ps2pdf - "$2"' - "$2" "$work/out.pdf") ;;
    esac
    rm -f "$work/out.pdf"
    /usr/bin/time -q -f '%U %S %e %M' -o "$work/usage" "${command[@]}" >/dev/null 2>"$work/errors" ||
        { cat "$work/errors" >&2; return 1; }
    [ -s "$work/out.pdf" ] || { echo "$1 has printed nothing" >&2; return 1; }
    awk '{ print $1 + $2, $3, $4 }' "$work/usage"
}

programs=(kestal)
[ ! -x "$bin/print_bench" ] || programs+=(floor)
! { command -v enscript && command -v ps2pdf; } >/dev/null || programs+=(enscript)

make_report 70212 "$work/report.log"
cat "$work/report.log" >/dev/null
for ((run = 0; run < runs; ++run)); do
    for program in "${programs[@]}"; do
        usage=$(measure "$program" "$work/report.log")
        echo "$program $usage" >>"$work/runs"
    done
done
awk -v f="$(stat -c %s "$work/report.log")" 'BEGIN { printf "70,212 lines, %.1f MB\n", f / 1e6 }'
printf '%-10s %8s %8s %9s %12s %12s\n' program 'CPU s' 's' 'peak MB' 'CPU/kestal' 's/kestal'
for program in "${programs[@]}"; do
    awk -v p="$program" '
        !($1 in cpu) || $2 < cpu[$1] { cpu[$1] = $2 }
        !($1 in wall) || $3 < wall[$1] { wall[$1] = $3 }
        $4 > peak[$1] { peak[$1] = $4 }
        END { printf "%-10s %8.2f %8.2f %9.1f %12.2f %12.2f\n", p, cpu[p], wall[p], peak[p] * 1.024 / 1000,
            cpu[p] / cpu["kestal"], wall[p] / wall["kestal"] }' "$work/runs"
done

make_report 702120 "$work/long.log"
for report in report long; do
    read -r _ _ kilobytes < <(measure kestal "$work/$report.log")
    awk -v f="$(stat -c %s "$work/$report.log")" -v k="$kilobytes" 'BEGIN {
        printf "kestal, %.1f MB: peak %.1f MB, %.1f MB beyond the text\n", f / 1e6, k * 1.024 / 1000,
            k * 1.024 / 1000 - f / 1e6 }'
done
