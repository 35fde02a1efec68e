#!/usr/bin/env bash
# Picture bullets under fast typing in the real window: picks a bullet in
# "Paragrafo puntato con immagine...", types several lines as fast as the
# keyboard goes with Enter between them, saves with Control+S and checks that
# every paragraph of the file starts with one bullet picture followed by its
# line, with no empty bullet line. Leaves a screenshot of the list.
#
#   scripts/e2e-bullets.sh [path/to/tornelia]     (default build/app/tornelia)
#
# Needs xvfb-run, xdotool, ImageMagick's import and perl. Prints PASS or FAIL.
set -uo pipefail
source "$(dirname "$(realpath "$0")")/e2e-common.sh"

doc=$work/elenco.tnl
: > "$doc"

QT_QPA_PLATFORM=xcb "$bin" "$doc" > "$work/out.log" 2>&1 &
pid=$!

wait_window "Tornelia - elenco.tnl"

# "Paragrafo puntato con immagine..." is the seventh entry of "Testo".
xdotool key alt+t
sleep 0.5
xdotool key Down Down Down Down Down Down Return
dialog=
for _ in $(seq 1 50); do
    dialog=$(xdotool search --onlyvisible --name "^Elenco puntato con immagini$" 2>/dev/null | head -n 1)
    [ -n "$dialog" ] && break
    sleep 0.1
done
[ -n "$dialog" ] || fail "the bullet window did not appear"
# The third bullet, then OK; with no window manager the main window must be
# given the focus back by hand.
xdotool key Right Right Return
sleep 0.5
xdotool windowfocus --sync "$win"
sleep 0.3

lines=(uno due tre quattro cinque sei sette otto nove dieci)
for ((i = 0; i < ${#lines[@]}; i++)); do
    [ "$i" -gt 0 ] && xdotool key --delay 1 Return
    xdotool type --delay 1 "${lines[$i]}"
done
sleep 0.5
xdotool key ctrl+s
for _ in $(seq 1 50); do
    [ -s "$doc" ] && break
    sleep 0.1
done
sleep 0.3
import -window root "$shot"
[ -s "$doc" ] || fail "nothing was saved"

# Each paragraph of the body, as "<pictures> <text>", one a line.
got=$(perl -0777 -ne '
    s/\r?\n//g;
    s/^.*?\\viewkind4//s;
    for my $p (split /\\par\b/) {
        my $n = () = $p =~ /\{\\pict/g;
        $p =~ s/\{\\pict[^}]*\}//g;
        $p =~ s/\\[a-z]+-?\d* ?//g;
        $p =~ s/[{}]//g;
        $p =~ s/^\s+|\s+$//g;
        print "$n $p\n" if $n || $p ne "";
    }' "$doc")
expected=$(for w in "${lines[@]}"; do echo "1 $w"; done)
if [ "$got" = "$expected" ]; then
    echo "PASS: ${#lines[@]} lines, each with its bullet picture; screenshot in $shot"
else
    echo "expected:"
    echo "$expected"
    echo "saved:"
    echo "$got"
    fail "the saved list differs"
fi
