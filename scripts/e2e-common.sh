# Sourced by the end-to-end scripts, after `set -uo pipefail`: finds the
# program, restarts the calling script inside a virtual display, and gives
# it a scratch folder with settings of its own, `fail` and `wait_window`.
# Sets bin, work, pid (the program, killed on exit) and shot (the screenshot,
# /tmp/tornelia-<script name>.png unless TORNELIA_E2E_SHOT names another).

self=$(realpath "$0")
bin=$(realpath "${1:-$(dirname "$self")/../build/app/tornelia}" 2>/dev/null)

for tool in xvfb-run xdotool import; do
    command -v "$tool" > /dev/null || { echo "FAIL: $tool is missing"; exit 1; }
done

# No key repeat on the virtual display: on a busy machine xdotool may be
# held up between a key's press and its release, long enough for the server
# to repeat the key, and a script would type what it never asked for.
# Two xvfb-run -a started at the same moment on one machine may pick the
# same display number; the loser's program then cannot connect. Such a run
# proves nothing, so it is tried again on another display.
if [ -z "${TORNELIA_E2E_DISPLAY:-}" ]; then
    for attempt in 1 2 3; do
        out=$(xvfb-run -a -s "-screen 0 1400x900x24 -r" env TORNELIA_E2E_DISPLAY=1 bash "$self" "${bin:-${1:-}}" 2>&1)
        rc=$?
        grep -qE "could not connect to display|Xvfb failed to start" <<<"$out" || break
        sleep $attempt
    done
    printf '%s\n' "$out"
    exit $rc
fi

shot=${TORNELIA_E2E_SHOT:-/tmp/tornelia-$(basename "$self" .sh).png}
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

# Waits up to ten seconds for a visible window with this title, focuses it
# and sets win; fails with the program's output if none appears.
wait_window() {
    win=
    for _ in $(seq 1 100); do
        win=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1)
        [ -n "$win" ] && break
        sleep 0.1
    done
    [ -n "$win" ] || fail "the window did not appear ($(cat "$work/out.log"))"
    xdotool windowfocus --sync "$win"
    sleep 0.5
}
