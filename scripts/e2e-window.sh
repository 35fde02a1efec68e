#!/usr/bin/env bash
# Drives the real window on a virtual display: opens a document from the
# command line, types, saves through the File menu with the keyboard (Alt+F,
# then the access key), types again and leaves with "Esci", answering "No"
# to the question. The file must hold the first typing and not the second,
# and the program must have ended. Leaves a screenshot of the open menu.
#
#   scripts/e2e-window.sh [path/to/tornelia]     (default build/app/tornelia)
#
# Needs xvfb-run, xdotool and ImageMagick's import. Prints PASS or FAIL.
set -uo pipefail
source "$(dirname "$(realpath "$0")")/e2e-common.sh"

doc="$work/nota di prova.txt"
printf 'Prima riga' > "$doc"

QT_QPA_PLATFORM=xcb "$bin" "$doc" > "$work/out.log" 2>&1 &
pid=$!

wait_window "Tornelia - nota di prova.txt"

xdotool type --delay 60 "Ciao "
sleep 0.3
# "&Salva" and "&Stampa..." share the S: the first press picks "&Salva",
# Return runs it.
xdotool key alt+f
sleep 0.5
xdotool key s
sleep 0.3
import -window root "$shot"
xdotool key Return
for _ in $(seq 1 50); do
    grep -q "Ciao" "$doc" && break
    sleep 0.1
done
grep -q "Ciao" "$doc" || fail "the save through the menu wrote nothing ($(cat "$doc"))"

xdotool type --delay 60 "non salvato "
sleep 0.3
# "Esci" is the last entry of File: Up from the top wraps round to it.
xdotool key alt+f
sleep 0.5
xdotool key Up Return
sleep 1
# The question: N answers "No".
ask=$(xdotool search --onlyvisible --name "^Salva$" 2>/dev/null | head -n 1)
[ -n "$ask" ] || fail "no question on leaving with unsaved work"
xdotool windowfocus --sync "$ask"
xdotool key n
for _ in $(seq 1 50); do
    kill -0 "$pid" 2>/dev/null || break
    sleep 0.1
done
kill -0 "$pid" 2>/dev/null && fail "the program did not end after the answer"
pid=

saved=$(cat "$doc")
if [ "$saved" = "Ciao Prima riga" ]; then
    echo "PASS: saved through the menu, left without saving the rest; screenshot in $shot"
else
    echo "expected: Ciao Prima riga"
    echo "saved:    $saved"
    fail "the saved document differs"
fi
