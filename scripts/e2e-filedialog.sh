#!/usr/bin/env bash
# Drives the program's own file dialog on a virtual display. "Apri" (Ctrl+O)
# must open it on the folder used last, where typing a bare name opens the
# .rtf file of that name; "Salva con nome..." from the File menu, given a
# name without extension, must save with the extension of the filter in use
# (.tnl for the text documents' filter). Leaves screenshots of the open and
# the save dialog beside TORNELIA_E2E_SHOT (-open.png, -save.png).
#
#   scripts/e2e-filedialog.sh [path/to/tornelia]     (default build/app/tornelia)
#
# Needs xvfb-run, xdotool and ImageMagick's import. Prints PASS or FAIL.
set -uo pipefail
source "$(dirname "$(realpath "$0")")/e2e-common.sh"

folder="$work/lettere"
mkdir -p "$folder/Archivio"
printf '{\\rtf1\\ansi{\\fonttbl{\\f0 Tahoma;}}\\f0 Cara Anna\\par}' > "$folder/lettera.rtf"
printf 'altro' > "$folder/appunti.txt"
# The folder the dialog used last, as the dialog itself keeps it.
mkdir -p "$XDG_CONFIG_HOME/Tornelia"
printf '[DirOp]\n5=%s\n' "$folder" > "$XDG_CONFIG_HOME/Tornelia/Tornelia.conf"

QT_QPA_PLATFORM=xcb "$bin" > "$work/out.log" 2>&1 &
pid=$!
wait_window "Tornelia - Documento 1"

xdotool key ctrl+o
wait_window "Seleziona il file da aprire"
import -window root "${shot%.png}-open.png"
xdotool type --delay 40 "lettera"
sleep 0.3
xdotool key Return
wait_window "Tornelia - lettera.rtf"

# The menu opens on "Nuovo..."; "Salva con nome..." is four rows down.
xdotool key alt+f
sleep 0.5
xdotool key Down Down Down Down Return
wait_window "Seleziona il file da salvare"
xdotool key ctrl+a
xdotool type --delay 40 "copia"
sleep 0.3
import -window root "${shot%.png}-save.png"
xdotool key Return
for _ in $(seq 1 50); do
    [ -s "$folder/copia.tnl" ] && break
    sleep 0.1
done
[ -s "$folder/copia.tnl" ] || fail "no copia.tnl after the save ($(ls "$folder"))"
grep -q 'Cara Anna' "$folder/copia.tnl" || fail "copia.tnl does not hold the letter: $(cat "$folder/copia.tnl")"
head -c 6 "$folder/copia.tnl" | grep -q '{\\rtf1' || fail "copia.tnl is not RTF"
wait_window "Tornelia - copia.tnl"
echo "PASS: opened lettera.rtf by its bare name in the last folder and saved copia.tnl; screenshots beside $shot"
