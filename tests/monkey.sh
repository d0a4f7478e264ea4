#!/usr/bin/env bash
# Drives the dialogs of the reference host as a careless user would: seeded random keys, access keys, clicks, drags,
# resizes and questions answered at random, in real windows on a screen of its own with a window manager. What it finds: a
# program that ends with another code than 0, a report of a sanitizer, a window that nobody can close.
#   monkey.sh KESTAL SAMPLES SEED...       one run for each seed; the same seed does the same again
#   monkey.sh KESTAL SAMPLES --minutes N   runs with rising seeds for so long
# EVENTS is how much happens in a run (60), PATIENCE how many keys may be needed to leave (100).
# KEEP=FOLDER keeps the log of each run that found something, with a picture of the screen (import) and the threads' stacks
# (gdb) of a window that stays. Needs xdotool, and what on_screen.sh needs.
set -u
here=$(cd "$(dirname "$0")" && pwd)
if [ -z "${MONKEY_ON_SCREEN:-}" ]; then
    export MONKEY_ON_SCREEN=1
    exec "$here/on_screen.sh" "$0" "$@"
fi
kestal=$1 samples=$2
shift 2

dialogs=("view job.log" "view report.rtf" "view wide.sum --mode 24" "job-list --folder jobs" "ls-options" \
    "ls-options --job job.gdb --mode 4" "ls-options --job job.gdb --mode 2 --page 1" "point-save --job job.gdb" \
    preferences "display --job job.gdb" "--folder ." "gauge --seconds 2" history)
keys=(Return space Tab Tab Tab shift+Tab Escape Up Down Left Right Home End Prior Next Delete BackSpace F3 F5 ctrl+f \
    ctrl+a ctrl+c ctrl+v ctrl+z ctrl+y ctrl+l ctrl+s ctrl+p ctrl+shift+p alt+F4 ctrl+Delete ctrl+plus ctrl+Tab menu F6 \
    alt+f alt+v alt+h alt+t ctrl+o ctrl+j ctrl+d)
access=(o c d s a n y p e w x r l f)
texts=(0 0.02 -5 7mm 1e400 1,234.5 "." x abc "12345678901234567890" "  " y n)

pick() { local -n list=$1; echo "${list[RANDOM % ${#list[@]}]}"; }

# Where the window that has the focus is: x y width height.
place() {
    local X=200 Y=200 WIDTH=300 HEIGHT=200 WINDOW SCREEN
    eval "$(timeout 5 xdotool getactivewindow getwindowgeometry --shell 2>/dev/null | grep -E '^[A-Z]+=[0-9-]+$')"
    echo "$X $Y $WIDTH $HEIGHT"
}

act() {
    local x y width height
    case $((RANDOM % 12)) in
    0 | 1 | 2 | 3) do_x key "$(pick keys)" ;;
    4) do_x key --delay 60 "alt+$(pick access)" "$( ((RANDOM % 2)) && echo Return || echo space)" ;;
    5) do_x key "alt+$(pick access)" ;;
    6 | 7) do_x type --delay $((RANDOM % 40)) -- "$(pick texts)" ;;
    8 | 9)
        read -r x y width height <<<"$(place)"
        do_x mousemove $((x + RANDOM % (width + 1))) $((y + RANDOM % (height + 1))) click --repeat $((1 + RANDOM % 2)) --delay 80 \
            $((RANDOM % 8 ? 1 : 3))
        ;;
    10)
        read -r x y width height <<<"$(place)"
        do_x mousemove $((x + RANDOM % (width + 1))) $((y + RANDOM % (height + 1))) mousedown 1 mousemove_relative -- \
            $((RANDOM % 200 - 100)) $((RANDOM % 100 - 50)) mouseup 1 click $((4 + RANDOM % 2))
        ;;
    11) do_x getactivewindow windowsize $((100 + RANDOM % 900)) $((80 + RANDOM % 700)) ;;
    esac
    ((RANDOM % 5)) || sleep 0.$((RANDOM % 3))
}
do_x() {
    echo "xdotool $*" >>"$log"
    timeout 10 xdotool "$@" 2>/dev/null
}

# A window that was minimized comes back, as from a task bar; where none has the keys, one gets them, as by a click.
fetch_back() {
    local window
    for window in $(timeout 5 xdotool search --class kestal 2>/dev/null); do
        timeout 5 xprop -id "$window" WM_STATE 2>/dev/null | grep -q Iconic && do_x windowmap "$window" windowactivate "$window"
    done
    timeout 5 xdotool getactivewindow >/dev/null 2>&1 ||
        do_x search --onlyvisible --class kestal windowactivate
}

# By the shell's own list: the number of a program that has ended may be another's by now.
runs_on() { jobs -pr | grep -qx "$program"; }

# Leaves what is open, a question at a time. False when the program stays.
leave() {
    for _ in $(seq "${PATIENCE:-100}"); do
        runs_on || return 0
        fetch_back
        do_x key "$(pick leaving)"
        sleep 0.25
    done
    return 1
}
leaving=(Escape alt+F4 alt+F4 n alt+n Return ctrl+q alt+c)

# The browser's engine leaves to the process's end what it took in libraries that are unloaded by then: leaks that have no
# other place than such a library are not ours.
only_unloaded() {
    grep -q 'ERROR: LeakSanitizer' "$1" && ! grep -qE 'ERROR: Add|runtime error' "$1" &&
        ! grep -E '^ *#1 ' "$1" | grep -qv 'unknown module'
}

run() {
    RANDOM=$1
    local dialog=${dialogs[$1 % ${#dialogs[@]}]} folder code
    folder=$(mktemp -d)
    log=$folder/monkey.log
    mkdir "$folder/home" "$folder/jobs"
    cp "$samples"/network.log "$folder/job.log"
    cp "$samples"/network_summary.rtf "$folder/report.rtf"
    cp "$samples"/traverse.sum "$folder/wide.sum"
    cp "$samples/jobs/Harrow Creek.gdb" "$folder/job.gdb"
    cp "$samples"/jobs/*.gdb "$folder/jobs"
    # shellcheck disable=SC2086 # the words of a dialog
    (cd "$folder" && HOME=$folder/home XDG_CONFIG_HOME=$folder/home XDG_DATA_HOME=$folder/home XDG_STATE_HOME=$folder/home \
        XDG_CACHE_HOME=$folder/home K_GENUTIL_REGISTRY=$folder/registry.ini exec "$kestal" $dialog >"$folder/out" 2>&1) &
    program=$!
    for _ in $(seq 100); do
        timeout 5 xdotool getactivewindow >/dev/null 2>&1 && break
        sleep 0.1
    done
    for _ in $(seq "${EVENTS:-60}"); do
        runs_on || break
        act
    done
    if leave; then
        wait "$program"
        code=$?
    else
        code="stays open"
        command -v import >/dev/null && import -window root "$folder/screen.png"
        command -v gdb >/dev/null && gdb -p "$program" -batch -ex "thread apply all backtrace" >"$folder/stacks" 2>&1
        kill -ABRT "$program"
        wait "$program" 2>/dev/null
    fi
    if { [ "$code" != 0 ] || grep -qE 'ERROR: |runtime error' "$folder/out"; } && ! only_unloaded "$folder/out"; then
        echo "seed $1 ($dialog): $code"
        tail -n 40 "$folder/out"
        [ -n "${KEEP:-}" ] && cp -r "$folder" "$KEEP/seed-$1"
        failed=$((failed + 1))
    fi
    rm -rf "$folder"
    runs=$((runs + 1))
}

failed=0 runs=0
if [ "$1" = --minutes ]; then
    end=$((SECONDS + $2 * 60))
    for ((seed = 1; SECONDS < end; ++seed)); do run "$seed"; done
else
    for seed in "$@"; do run "$seed"; done
fi
echo "$runs runs, $failed with findings"
[ "$failed" = 0 ]
