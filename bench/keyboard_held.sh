#!/usr/bin/env bash
# The window left alone, and then with one key held, as seen from outside. The real
# program runs under a fresh Xvfb and HOME in play mode (the mode it starts in): first
# it sits idle, where nothing should wake it, then one key is held down with the X
# server repeating it, as a player holds a note, where the keyboard must stay cheap.
# Wake-ups are the context switches of all the program's threads, CPU its user and
# system time, both read from /proc. Several runs; medians beside the targets.
#
# Usage: bench/keyboard_held.sh [--runs N] [--settle SECONDS] [--idle SECONDS] [--hold SECONDS]
#                               [--key KEYSYM] [PROGRAM]
#   PROGRAM defaults to build/src/app/lirenza; the key to x (the G string's open note).
#   --settle: how long after the window shows the idle stretch begins (default 5 s).
#   The toolkit ages its font cache every 10 s until the text drawn at the start has
#   expired, so an idle stretch that begins early can hold a wake-up or two of it.
# Never fails on a figure; exits 1 only when nothing could be measured.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
runs=3
settle=5
idle=20
hold=10
key=x
program="$repo/build/src/app/lirenza"
while [ $# -gt 0 ]; do
  case "$1" in
    --runs) runs=$2; shift 2 ;;
    --settle) settle=$2; shift 2 ;;
    --idle) idle=$2; shift 2 ;;
    --hold) hold=$2; shift 2 ;;
    --key) key=$2; shift 2 ;;
    -h|--help) sed -n '2,15p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    *) program=$1; shift ;;
  esac
done
for tool in Xvfb xdotool; do
  command -v "$tool" >/dev/null || { echo "keyboard_held: $tool is not installed" >&2; exit 1; }
done
program=$(realpath "$program")
[ -x "$program" ] || { echo "keyboard_held: $program is not built" >&2; exit 1; }
hz=$(getconf CLK_TCK)

# CPU ticks (user + system) of a process, or of one thread as /proc/PID/task/TID; and
# the context switches of all a process's threads, each thread's by name.
cpu_ticks() { awk '{ sub(/.*\) /, ""); split($0, f, " "); print f[12] + f[13] }' "/proc/$1/stat"; }
switches() { cat /proc/"$1"/task/*/status 2>/dev/null | awk '/ctxt_switches/ { n += $2 } END { print n + 0 }'; }
switches_by_thread() {
  for t in /proc/"$1"/task/*; do
    awk -v main="$([ "${t##*/}" = "$1" ] && echo 1)" '/^Name:/ { name = main ? "window-thread" : $2 }
      /ctxt_switches/ { n += $2 } END { print name, n + 0 }' "$t/status" 2>/dev/null
  done | awk '{ n[$1] += $2 } END { for (k in n) print k, n[k] }' | sort
}
# Which threads woke between two lists of switches_by_thread, and how often.
woken() { join -a 2 -e 0 -o 0,1.2,2.2 <(printf '%s\n' "$1") <(printf '%s\n' "$2") | awk '$3 > $2 { printf " %s %d", $1, $3 - $2 }'; }
median() { sort -g | awk '{ v[NR] = $1 } END { if (NR) print v[int((NR + 1) / 2)]; else print "nan" }'; }

display=
for n in $(seq 60 99); do
  if [ ! -e "/tmp/.X11-unix/X$n" ] && [ ! -e "/tmp/.X$n-lock" ]; then display=":$n"; break; fi
done
[ -n "$display" ] || { echo "keyboard_held: no free X display" >&2; exit 1; }

xvfb_pid= app_pid= home=
cleanup() {
  [ -n "$app_pid" ] && kill "$app_pid" 2>/dev/null && wait "$app_pid" 2>/dev/null || true
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null && wait "$xvfb_pid" 2>/dev/null || true
  [ -n "$home" ] && rm -rf "$home"
  return 0
}
trap cleanup EXIT

idle_rates= hold_cpus= hold_rates=
echo "measuring $program on $display: $runs runs, $idle s idle from $settle s after start, $hold s holding $key"
for run in $(seq "$runs"); do
  Xvfb "$display" -screen 0 1400x900x24 -nolisten tcp 2>/dev/null &
  xvfb_pid=$!
  for _ in $(seq 50); do [ -e "/tmp/.X11-unix/X${display#:}" ] && break; sleep 0.1; done
  export DISPLAY=$display QT_QPA_PLATFORM=xcb
  home=$(mktemp -d /tmp/lirenza-held-XXXXXX)
  mkdir -m 700 "$home/run"
  (cd "$home" && exec env -u XDG_CONFIG_HOME -u XDG_DATA_HOME HOME="$home" XDG_RUNTIME_DIR="$home/run" \
       LANG=C.UTF-8 "$program" >/dev/null 2>&1) &
  app_pid=$!
  for _ in $(seq 100); do xdotool search --onlyvisible --pid "$app_pid" >/dev/null 2>&1 && break; sleep 0.1; done
  # The start pause reveals the slow controls and the sound fonts load: let that pass.
  sleep "$settle"

  s0=$(switches "$app_pid"); t0=$(switches_by_thread "$app_pid"); sleep "$idle"
  s1=$(switches "$app_pid"); t1=$(switches_by_thread "$app_pid")
  idle_rate=$(awk -v a="$s0" -v b="$s1" -v t="$idle" 'BEGIN { printf "%.2f", (b - a) / t }')

  c0=$(cpu_ticks "$app_pid"); m0=$(cpu_ticks "$app_pid/task/$app_pid"); s0=$(switches "$app_pid")
  h0=$(switches_by_thread "$app_pid")
  xdotool keydown "$key"; sleep "$hold"
  c1=$(cpu_ticks "$app_pid"); m1=$(cpu_ticks "$app_pid/task/$app_pid"); s1=$(switches "$app_pid")
  h1=$(switches_by_thread "$app_pid")
  xdotool keyup "$key"
  percent() { awk -v a="$1" -v b="$2" -v t="$hold" -v hz="$hz" 'BEGIN { printf "%.2f", 100 * (b - a) / hz / t }'; }
  hold_cpu=$(percent "$c0" "$c1")
  hold_rate=$(awk -v a="$s0" -v b="$s1" -v t="$hold" 'BEGIN { printf "%.1f", (b - a) / t }')
  echo "  run $run: idle $idle_rate wake-ups/s (woken:$(woken "$t0" "$t1")); key held: $hold_cpu % of a core" \
       "($(percent "$m0" "$m1") % on the window's thread, the rest rendering the note), $hold_rate wake-ups/s" \
       "(woken:$(woken "$h0" "$h1"))"
  if [ "$s1" = "$s0" ]; then echo "  run $run: the held key never woke the program: did it reach the window?" >&2; fi

  idle_rates+="$idle_rate"$'\n'; hold_cpus+="$hold_cpu"$'\n'; hold_rates+="$hold_rate"$'\n'
  cleanup
  app_pid= xvfb_pid= home=
done

idle_median=$(printf '%s' "$idle_rates" | median)
cpu_median=$(printf '%s' "$hold_cpus" | median)
rate_median=$(printf '%s' "$hold_rates" | median)
awk -v idle="$idle_median" -v cpu="$cpu_median" -v rate="$rate_median" -v secs="$idle" 'BEGIN {
  printf "%-44s median %8.2f /s   target 0 /s over %d s   %s\n", "wake-ups a second, idle in play mode", idle, secs, idle + 0 == 0 ? "ok" : "OVER"
  printf "%-44s median %8.2f %%    target < 2 %% of a core   %s\n", "CPU with one key held (auto-repeat on)", cpu, cpu + 0 < 2 ? "ok" : "OVER"
  printf "%-44s median %8.1f /s\n", "wake-ups a second with the key held", rate
}'
