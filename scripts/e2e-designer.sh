#!/usr/bin/env bash
# The text designer from its menu item to a saved document: opens
# "Testo speciale..." from the Testo menu's "Inserisci", types a text, turns
# on the border, a gradient fill and the "Blur" filter, and inserts the
# picture into the document. The document is saved, the program started
# again on it, and the reopened document must still hold the picture: it is
# copied out through the clipboard and checked there. Leaves a screenshot of
# the designer (and, with TORNELIA_E2E_SHOTS set to a folder, one of each
# tab and of the reopened document).
#
#   scripts/e2e-designer.sh [path/to/tornelia]     (default build/app/tornelia)
#
# Needs xvfb-run, xdotool, xclip, perl and ImageMagick. Prints PASS or FAIL.
set -uo pipefail
source "$(dirname "$(realpath "$0")")/e2e-common.sh"

command -v xclip > /dev/null || fail "xclip is missing"
command -v identify > /dev/null || fail "ImageMagick's identify is missing"
command -v perl > /dev/null || fail "perl is missing"
shots=${TORNELIA_E2E_SHOTS:-}

doc="$work/con disegno.rtf"
printf '%s' '{\rtf1\ansi\deff0{\fonttbl{\f0 Tahoma;}}\f0\fs24 Prima \par}' > "$doc"

# Waits until no visible window has this title.
wait_gone() {
    for _ in $(seq 1 100); do
        xdotool search --onlyvisible --name "$1" > /dev/null 2>&1 || return 0
        sleep 0.1
    done
    fail "the window \"$1\" did not close"
}

# Waits for the file to hold the pattern.
wait_file() {
    for _ in $(seq 1 100); do
        grep -q "$2" "$1" 2>/dev/null && return 0
        sleep 0.1
    done
    return 1
}

shoot() {
    [ -n "$shots" ] && { sleep 0.4; import -window root "$shots/$1.png"; }
    return 0
}

QT_QPA_PLATFORM=xcb "$bin" "$doc" > "$work/out.log" 2>&1 &
pid=$!
wait_window "Tornelia - con disegno.rtf"
main=$win
xdotool key ctrl+End
sleep 0.3

# Testo > Inserisci > Testo speciale...: two entries of that menu share the
# T, so the first T only marks the entry and Return opens it.
xdotool key alt+t
sleep 0.5
xdotool key r
sleep 0.5
xdotool key t Return
wait_window "^Testo speciale$"
designer=$win
xdotool windowmove --sync "$designer" 20 20
sleep 0.3
shoot designer-testo

# The text box has the focus with its text selected.
xdotool type --delay 60 "Ciao"
sleep 0.3

# A tab's mnemonic puts the focus on its first control. Border: its box.
xdotool key alt+b
sleep 0.3
xdotool key space
sleep 0.3
shoot designer-bordo

# The text's paint: off the solid colour, on the gradient (the third stop).
xdotool key alt+r
sleep 0.3
xdotool key space Tab Tab space
sleep 0.3
shoot designer-riempimento

xdotool key alt+f
shoot designer-sfondo

# The filter list is the effects tab's first control; "Blur" by its initial.
xdotool key alt+e
sleep 0.3
xdotool key b
sleep 1.5
import -window root "$shot"
shoot designer-effetti

xdotool key alt+i
sleep 0.5
xdotool key alt+c
wait_gone "^Testo speciale$"

xdotool windowfocus --sync "$main"
sleep 0.3
before=$(md5sum < "$doc")
xdotool key ctrl+s
for _ in $(seq 1 100); do
    [ "$(md5sum < "$doc")" != "$before" ] && break
    sleep 0.1
done
wait_file "$doc" 'pngblip' || fail "the saved document holds no picture: $(head -c 600 "$doc")"
grep -q 'Prima' "$doc" || fail "the saved document lost its text"

# The picture is the designer's whole canvas, and the gradient and the blur
# left it with many shades where plain text would have two.
# The group's words fill its first line; the hex data follows in lines.
perl -0777 -ne 'if (/\\pngblip[^\r\n]*\r?\n([0-9a-fA-F\r\n]+)\}/) { ($h = $1) =~ s/\s//g; print $h }' "$doc" |
    xxd -r -p > "$work/disegno.png"
read -r size colours < <(identify -format '%wx%h %k\n' "$work/disegno.png" 2>/dev/null | head -n 1)
[ "${size:-}" = "400x150" ] || fail "the picture in the document is ${size:-not readable}, not the 400x150 canvas"
[ "${colours:-0}" -ge 16 ] || fail "the picture has only ${colours:-0} colours: no gradient or blur"

kill "$pid" 2>/dev/null
wait "$pid" 2>/dev/null
pid=
wait_gone "Tornelia - con disegno.rtf"

# Reopened, the document shows the picture; a copy of all carries it out.
QT_QPA_PLATFORM=xcb "$bin" "$doc" >> "$work/out.log" 2>&1 &
pid=$!
wait_window "Tornelia - con disegno.rtf"
shoot riaperto
xdotool key ctrl+Home shift+End
sleep 0.3
xdotool key ctrl+c
sleep 0.8
xclip -o -selection clipboard -t text/rtf > "$work/copia.rtf" 2>/dev/null
grep -q 'pngblip' "$work/copia.rtf" || fail "the reopened document lost the picture: $(head -c 400 "$work/copia.rtf")"
echo "PASS: the designer's picture went into the document, was saved and came back; screenshot in $shot"
