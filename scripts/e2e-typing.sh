#!/usr/bin/env bash
# Types a sentence into the real window on a virtual display, with some
# automatic corrections switched on, saves with Control+S and checks that the
# file holds the corrected text. Leaves a screenshot for a look at the arrow.
#
#   scripts/e2e-typing.sh [path/to/tornelia]     (default build/app/tornelia)
#
# Needs xvfb-run, xdotool and ImageMagick's import. Prints PASS or FAIL.
set -uo pipefail
source "$(dirname "$(realpath "$0")")/e2e-common.sh"

mkdir -p "$XDG_CONFIG_HOME/Tornelia"
cat > "$XDG_CONFIG_HOME/Tornelia/Tornelia.conf" <<'INI'
[Corr]
1=True
2=True
5=True
7=True
9=True
INI

# An existing empty document, so that Control+S saves there with no dialog.
doc=$work/prova.tnl
: > "$doc"

QT_QPA_PLATFORM=xcb "$bin" "$doc" > "$work/out.log" 2>&1 &
pid=$!

wait_window "Tornelia - prova.tnl"

xdotool type --delay 60 "ciao. come va,bene(c) -> fine (tm) <- qui"
sleep 0.3
xdotool key ctrl+s
for _ in $(seq 1 50); do
    [ -s "$doc" ] && break
    sleep 0.1
done
sleep 0.3
import -window root "$shot"

[ -s "$doc" ] || fail "nothing was saved"
# The blank after the comma, the copyright and trade mark signs, the two
# Wingdings arrows with the text's own font after each; no capital after the
# full stop, since each typed character moves the caret and that ends the
# wait for a capital.
expected="\\viewkind4\\uc1\\pard\\f0\\fs20 ciao. come va, bene\\'a9 \\f1\\'e0\\f0  fine \\'99 \\f1\\'df\\f0  qui\\par"
if grep -qF "$expected" "$doc"; then
    echo "PASS: the saved document holds the corrected text; screenshot in $shot"
else
    echo "expected: $expected"
    echo "saved:"
    cat "$doc"
    fail "the saved document differs"
fi
