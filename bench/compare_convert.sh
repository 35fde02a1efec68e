#!/usr/bin/env bash
# Times the headless text conversion of a generated 4 MB formatted RTF file
# against unrtf's text conversion of the same file, side by side in one run,
# start-up included for both. A measurement aid only.
#
#   bench/compare_convert.sh [BUILD_DIR] [RUNS]
#
# BUILD_DIR is a Release build holding app/tornelia and bench/tornelia_bench
# (default build).
set -euo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$here/build}
runs=${2:-5}
app=$build/app/tornelia
bench=$build/bench/tornelia_bench

command -v unrtf >/dev/null || { echo "missing: unrtf" >&2; exit 1; }
for f in "$app" "$bench"; do
    [[ -x $f ]] || { echo "missing: $f" >&2; exit 1; }
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
file=$work/formattato.rtf
"$bench" --generate "$file" $((4 * 1024 * 1024))
echo "file: $(stat -c %s "$file") bytes"

# The median of RUNS wall-clock runs of a command, in seconds.
median() {
    local times=()
    for ((i = 0; i < runs; i++)); do
        local t0 t1
        t0=$(date +%s.%N)
        "$@" >/dev/null 2>&1
        t1=$(date +%s.%N)
        times+=("$(echo "$t1 - $t0" | bc -l)")
    done
    printf '%s\n' "${times[@]}" | sort -g | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}'
}

# The two take turns, so a busy machine weighs on both alike.
ours=()
theirs=()
for ((r = 0; r < runs; r++)); do
    ours+=("$(runs=1 median env QT_QPA_PLATFORM=offscreen "$app" --convert-to txt "$file" -o "$work/out.txt")")
    theirs+=("$(runs=1 median unrtf --text "$file")")
done
mid() { printf '%s\n' "$@" | sort -g | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}'; }
t_ours=$(mid "${ours[@]}")
t_theirs=$(mid "${theirs[@]}")
printf '%-32s %8.3f s\n' "tornelia --convert-to txt" "$t_ours" "unrtf --text" "$t_theirs"
printf 'unrtf / tornelia: %.2f times\n' "$(echo "$t_theirs / $t_ours" | bc -l)"
