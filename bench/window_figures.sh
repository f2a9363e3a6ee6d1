#!/usr/bin/env bash
# The window's figures as seen from outside, beside their targets: launch to first
# paint, resident memory with the sound fonts loaded, and wake-ups a second while the
# window sits idle in play mode (the mode it starts in). The measuring is done by
# window-figures, the script the other desktop music programs were measured with on
# this kind of machine, so the figures stand beside theirs: it starts the program under
# a fresh Xvfb and HOME several times and prints medians.
#
# Usage: bench/window_figures.sh [--runs N] [--idle SECONDS] [PROGRAM]
#   PROGRAM defaults to build/src/app/lirenza; LIRENZA_WINDOW_FIGURES names the
#   measuring script when it is not in ../shared/measure beside the repository.
# Never fails on a figure; exits 1 only when nothing could be measured.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
runs=5
idle=20
program="$repo/build/src/app/lirenza"
while [ $# -gt 0 ]; do
  case "$1" in
    --runs) runs=$2; shift 2 ;;
    --idle) idle=$2; shift 2 ;;
    -h|--help) sed -n '2,12p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    *) program=$1; shift ;;
  esac
done
program=$(realpath "$program")  # the measurer starts it from a fresh HOME
measure=${LIRENZA_WINDOW_FIGURES:-$repo/../shared/measure/window-figures}
if [ ! -x "$measure" ]; then
  echo "window_figures: the measuring script $measure is missing; set LIRENZA_WINDOW_FIGURES" >&2
  exit 1
fi
if [ ! -x "$program" ]; then
  echo "window_figures: $program is not built" >&2
  exit 1
fi

echo "measuring $program: $runs runs, $idle s idle each"
if ! figures=$("$measure" --runs "$runs" --idle "$idle" --name Lirenza -- "$program"); then
  echo "window_figures: nothing measured: $figures" >&2
  exit 1
fi

# window-figures prints "<key> median <value> <unit> (min ..., max ..., runs ...)".
awk '
  function report(what, value, unit, target, ok) {
    printf "%-44s median %8.1f %-4s target %s   %s\n", what, value, unit, target, ok ? "ok" : "OVER"
  }
  $2 == "median" { v[$1] = $3; spread[$1] = $0; sub(/.*\(/, "(", spread[$1]) }
  END {
    if (!("paint_ms" in v)) { print "the window never painted"; exit 1 }
    report("launch to first paint", v["paint_ms"], "ms", "< 120 ms (virtual keyboard 120, notation editor 612)", v["paint_ms"] < 120)
    report("resident memory, sound fonts loaded", v["rss_mib"], "MiB", "< 100 MiB (virtual keyboard 100, notation editor 159)", v["rss_mib"] < 100)
    report("wake-ups a second, idle in play mode", v["switches_per_s"], "/s", "0 /s (virtual keyboard 0, notation editor 60)", v["switches_per_s"] < 0.5)
    printf "%-44s median %8.1f ms\n", "launch to map", v["map_ms"]
    printf "%-44s median %8.1f %% of a core\n", "idle CPU", v["idle_cpu_pct"]
    for (k in spread) printf "  %-16s %s\n", k, spread[k]
  }' <<<"$figures"
