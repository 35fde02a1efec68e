#!/usr/bin/env bash
# Types a sentence into the real window on a virtual display, with some
# automatic corrections switched on, saves with Control+S and checks that the
# file holds the corrected text. Leaves a screenshot for a look at the arrow.
#
#   scripts/e2e-typing.sh [path/to/tornelia]     (default build/app/tornelia)
#
# Needs xvfb-run, xdotool and ImageMagick's import. Prints PASS or FAIL.
set -uo pipefail
self=$(realpath "$0")
bin=$(realpath "${1:-$(dirname "$self")/../build/app/tornelia}" 2>/dev/null)

for tool in xvfb-run xdotool import; do
    command -v "$tool" > /dev/null || { echo "FAIL: $tool is missing"; exit 1; }
done

if [ -z "${TORNELIA_E2E_DISPLAY:-}" ]; then
    exec xvfb-run -a -s "-screen 0 1400x900x24" env TORNELIA_E2E_DISPLAY=1 bash "$self" "${bin:-${1:-}}"
fi

shot=${TORNELIA_E2E_SHOT:-/tmp/tornelia-e2e-typing.png}
work=$(mktemp -d)
pid=
cleanup() {
    [ -n "$pid" ] && kill "$pid" 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT

fail() {
    echo "FAIL: $*"
    exit 1
}

[ -n "$bin" ] && [ -x "$bin" ] || fail "no program at ${1:-build/app/tornelia}; build it first"

# Settings and data of its own, never the user's.
export XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data
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

win=
for _ in $(seq 1 100); do
    win=$(xdotool search --onlyvisible --name "Tornelia - prova.tnl" 2>/dev/null | head -n 1)
    [ -n "$win" ] && break
    sleep 0.1
done
[ -n "$win" ] || fail "the window did not appear ($(cat "$work/out.log"))"
xdotool windowfocus --sync "$win"
sleep 0.5

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
