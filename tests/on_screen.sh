#!/usr/bin/env bash
# Runs a program on a screen of its own (Xvfb) with a window manager (openbox), as a user would have it.
#   on_screen.sh PROGRAM [ARGUMENT...]
# SCREEN is its size (1280x1024).
set -eu
folder=$(mktemp -d)
screen= manager=
cleanup() {
    [ -n "$manager" ] && kill "$manager" 2>/dev/null
    [ -n "$screen" ] && kill "$screen" 2>/dev/null
    rm -rf "$folder"
}
trap cleanup EXIT

# The server picks a free display number and writes it. It does not start anew when the first client leaves, which would
# shut the next one out that comes in that moment.
Xvfb -noreset -displayfd 3 -screen 0 "${SCREEN:-1280x1024}x24" -dpi 96 -nolisten tcp 3>"$folder/number" 2>"$folder/log" &
screen=$!
for _ in $(seq 100); do
    [ -s "$folder/number" ] && break
    sleep 0.1
done
[ -s "$folder/number" ] || { cat "$folder/log" >&2; exit 1; }
DISPLAY=:$(cat "$folder/number")
export DISPLAY QT_QPA_PLATFORM=xcb

# Without the menu of the desktop, from which a click at random could end the window manager.
sed '/<context name="\(Root\|Desktop\)">/,/<\/context>/d' /etc/xdg/openbox/rc.xml >"$folder/rc.xml"
openbox --config-file "$folder/rc.xml" 2>>"$folder/log" &
manager=$!
for _ in $(seq 100); do
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break
    sleep 0.1
done
kill -0 "$manager" 2>/dev/null || { cat "$folder/log" >&2; echo "No window manager" >&2; exit 1; }
"$@"
