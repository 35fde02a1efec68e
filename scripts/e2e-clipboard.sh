#!/usr/bin/env bash
# Two running copies of the program share the clipboard: a line with bold
# and red copied in one is pasted in the other and saved with both. Then a
# picture put on the clipboard by another program (xclip) shows in the
# clipboard panel and pastes from there into the document, which saves it
# as a picture of the RTF. Leaves a screenshot of the panel.
#
#   scripts/e2e-clipboard.sh [path/to/tornelia]     (default build/app/tornelia)
#
# Needs xvfb-run, xdotool, xclip and ImageMagick. Prints PASS or FAIL.
set -uo pipefail
source "$(dirname "$(realpath "$0")")/e2e-common.sh"

command -v xclip > /dev/null || fail "xclip is missing"
command -v convert > /dev/null || fail "ImageMagick's convert is missing"

src="$work/sorgente.rtf"
dst="$work/destinazione.rtf"
printf '%s' '{\rtf1\ansi{\fonttbl{\f0 Arial;}}{\colortbl ;\red255\green0\blue0;}\f0\fs24 {\b\cf1 grassetto rosso} e normale\par}' > "$src"
printf '%s' '{\rtf1\ansi\f0 \par}' > "$dst"
convert -size 60x40 xc:blue -fill yellow -draw "rectangle 10,10 30,30" "$work/quadro.png"

QT_QPA_PLATFORM=xcb "$bin" "$src" > "$work/out.log" 2>&1 &
first=$!
wait_window "Tornelia - sorgente.rtf"
xdotool key ctrl+Home shift+End
sleep 0.3
xdotool key ctrl+c
sleep 0.5

QT_QPA_PLATFORM=xcb "$bin" "$dst" >> "$work/out.log" 2>&1 &
pid=$!
trap 'kill $first 2>/dev/null; cleanup' EXIT
wait_window "Tornelia - destinazione.rtf"
second=$win
xdotool key ctrl+v
sleep 0.5
xdotool key ctrl+s
for _ in $(seq 1 50); do
    grep -q 'grassetto' "$dst" && break
    sleep 0.1
done
grep -q '\\b[\\ ].*grassetto rosso' "$dst" ||
    fail "the pasted line lost its bold ($(cat "$dst"))"
grep -q '\\red255\\green0\\blue0' "$dst" || fail "the pasted line lost its red ($(cat "$dst"))"

# Another program takes the clipboard with a picture; the panel records it
# as its newest entry, which "Incolla selezionato" pastes.
xclip -selection clipboard -t image/png -i "$work/quadro.png" &
sleep 2
import -window root "$shot"
# The panel's first button, 95 pixels from the right edge and 90 from the
# bottom of the window's 1120x720.
xdotool windowsize --sync "$second" 1120 720
sleep 0.5
xdotool mousemove --window "$second" 1025 630 click 1
sleep 0.5
xdotool key ctrl+s
for _ in $(seq 1 50); do
    grep -q 'pngblip' "$dst" && break
    sleep 0.1
done
grep -q '\\pict\\pngblip\\picw60\\pich40' "$dst" || fail "the picture did not reach the document ($(head -c 400 "$dst"))"
grep -q 'grassetto rosso' "$dst" || fail "the picture replaced the text"
echo "PASS: bold and red crossed between two copies, the picture pasted from the panel; screenshot in $shot"
