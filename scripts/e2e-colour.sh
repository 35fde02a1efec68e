#!/usr/bin/env bash
# Colours the text through the program's own colour dialog: opens an RTF
# document, selects the line, picks "Colore testo..." from the "C&olore"
# submenu of the Testo menu, clicks near the top right of the field (a
# strong red, as the dialog opens on black text's red hue) and confirms with
# Return. Saves through the File menu; the saved RTF must colour the text
# with that red. Leaves a screenshot of the open dialog.
#
#   scripts/e2e-colour.sh [path/to/tornelia]     (default build/app/tornelia)
#
# Needs xvfb-run, xdotool and ImageMagick's import. Prints PASS or FAIL.
set -uo pipefail
source "$(dirname "$(realpath "$0")")/e2e-common.sh"

doc="$work/colori di prova.rtf"
printf '{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Tahoma;}}\\f0\\fs24 Ciao mondo\\par}' > "$doc"

QT_QPA_PLATFORM=xcb "$bin" "$doc" > "$work/out.log" 2>&1 &
pid=$!

wait_window "Tornelia - colori di prova.rtf"

xdotool key ctrl+Home shift+End
sleep 0.3
xdotool key alt+t
sleep 0.5
xdotool key o
sleep 0.5
xdotool key t
wait_window "^Colore$"
dialog=$win

# The field is the first thing in the dialog, 256 pixels square, a layout
# margin in from the top left corner: this point is saturation 240/255 and
# brightness 235/255 of the red hue.
xdotool mousemove --window "$dialog" 251 31 click 1
sleep 0.5
import -window root "$shot"
xdotool key Return
for _ in $(seq 1 50); do
    xdotool search --onlyvisible --name "^Colore$" > /dev/null 2>&1 || break
    sleep 0.1
done
xdotool search --onlyvisible --name "^Colore$" > /dev/null 2>&1 && fail "the dialog did not close on Return"

# "&Salva" is the first S of the File menu.
main=$(xdotool search --onlyvisible --name "Tornelia - colori di prova.rtf" | head -n 1)
xdotool windowfocus --sync "$main"
sleep 0.3
before=$(md5sum < "$doc")
xdotool key alt+f
sleep 0.5
xdotool key s
sleep 0.3
xdotool key Return
for _ in $(seq 1 50); do
    [ "$(md5sum < "$doc")" != "$before" ] && break
    sleep 0.1
done

table=$(grep -o '{\\colortbl[^}]*}' "$doc")
[ -n "$table" ] || fail "no colour table in the saved document: $(cat "$doc")"
read -r red green blue < <(echo "$table" | sed -n 's/.*\\red\([0-9]*\)\\green\([0-9]*\)\\blue\([0-9]*\);.*/\1 \2 \3/p')
grep -q '\\cf1[^ ]* Ciao mondo' "$doc" || fail "the text is not in the chosen colour: $(cat "$doc")"
if [ "${red:-0}" -ge 220 ] && [ "${red:-0}" -le 245 ] && [ "${green:-255}" -le 30 ] && [ "${blue:-255}" -le 30 ]; then
    echo "PASS: the text took red $red green $green blue $blue from the field; screenshot in $shot"
else
    echo "colour table: $table"
    fail "the colour is not the one clicked"
fi
