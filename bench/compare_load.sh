#!/usr/bin/env bash
# Times the load of a generated 5 MB RTF file against two other readers of the
# same file: unrtf's text conversion and LibreOffice's headless conversion.
# A measurement aid only; the two programs are not needed to build or test.
#
#   bench/compare_load.sh [BUILD_DIR] [RUNS]
#
# BUILD_DIR is a Release build holding bench/tornelia_bench (default
# build-bench); when it also holds app/tornelia, the program's own headless
# conversion is timed as well, start-up included like the other two.
set -euo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$here/build-bench}
runs=${2:-5}
bench=$build/bench/tornelia_bench
app=$build/app/tornelia

for tool in hyperfine unrtf soffice python3; do
    command -v "$tool" >/dev/null || { echo "missing: $tool" >&2; exit 1; }
done
[[ -x $bench ]] || { echo "missing: $bench (build the tornelia_bench target)" >&2; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
file=$work/grande.rtf
"$bench" --generate "$file"
echo "file: $(stat -c %s "$file") bytes"

# The load inside the program, without start-up: the benchmark's own figure.
QT_QPA_PLATFORM=offscreen "$bench" --benchmark_filter='^BM_(LoadFile|LineCar)5MB' \
    --benchmark_repetitions="$runs" --benchmark_report_aggregates_only=true \
    --benchmark_format=json --benchmark_out="$work/inproc.json" >/dev/null

# LibreOffice keeps its profile in a folder of its own, so the user's is
# never touched; the warm-up run creates it.
profile="file://$work/lo-profile"
commands=(-n unrtf "unrtf --text '$file'"
          -n libreoffice "soffice -env:UserInstallation=$profile --headless --convert-to txt --outdir '$work/lo' '$file'")
if [[ -x $app ]]; then
    commands+=(-n tornelia "QT_QPA_PLATFORM=offscreen '$app' --convert-to txt '$file' -o '$work/tornelia.txt'")
fi
hyperfine --style basic --warmup 1 --runs "$runs" --export-json "$work/processes.json" "${commands[@]}"

python3 - "$work/inproc.json" "$work/processes.json" <<'EOF'
import json, sys

inproc = {}
for b in json.load(open(sys.argv[1]))["benchmarks"]:
    if b.get("aggregate_name") == "median":
        inproc[b["run_name"].split("/")[0]] = b["real_time"] / 1000.0  # ms -> s
procs = {r["command"]: r for r in json.load(open(sys.argv[2]))["results"]}

load = inproc["BM_LoadFile5MB"]
print()
print(f"{'reader':<38}{'median s':>10}{'x our LoadFile':>16}")
print(f"{'tornelia LoadFile (in process)':<38}{load:>10.3f}{1.0:>16.2f}")
print(f"{'tornelia lineCar (in process)':<38}{inproc['BM_LineCar5MB']:>10.3f}"
      f"{inproc['BM_LineCar5MB'] / load:>16.2f}")
for name in ("tornelia", "unrtf", "libreoffice"):
    if name in procs:
        t = procs[name]["median"]
        label = f"{name} (process)" if name != "tornelia" else "tornelia --convert-to txt (process)"
        print(f"{label:<38}{t:>10.3f}{t / load:>16.2f}")
EOF
