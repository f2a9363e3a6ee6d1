#!/usr/bin/env bash
# The running program played from the keyboard under a virtual display: xdotool holds
# real keys (the X server repeats them), the program's note trace must show each note
# started once and ended once at the pitch of the tuning table, the violin must show
# the finger while the key is held and be clean again after, and the sound the file
# driver captured must not be silence. Screenshots are left in $LIRENZA_SHOTS if set.
#
# Usage: keyboard_xvfb_test.sh PROGRAM LIRENZA_CLI   (KEEP_WORK=1 keeps the trace and the sound)
set -u
program=$1 cli=$2
source "$(dirname "$0")/xvfb_session.sh" keyboard_xvfb_test sox

mkdir -m 700 -p "$work/home/run"
HOME="$work/home" XDG_RUNTIME_DIR="$work/home/run" LIRENZA_NOTE_TRACE="$work/trace" \
  LIRENZA_AUDIO_DRIVER=file LIRENZA_AUDIO_CAPTURE="$work/sound.raw" "$program" >"$work/program.log" 2>&1 &
app_pid=$!
window=
for _ in $(seq 120); do  # up to a minute on a loaded machine
  window=$(xdotool search --onlyvisible --name '^Lirenza$' 2>/dev/null | head -1)
  [ -n "$window" ] && break
  kill -0 "$app_pid" 2>/dev/null || break
  sleep 0.5
done
if [ -z "$window" ]; then
  echo "no window came up; the program's output and the screen's windows:" >&2
  cat "$work/program.log" >&2
  xwininfo -root -tree 2>&1 | grep -v '(has no name)' | head -20 >&2
  exit 1
fi
eval "$(xdotool getwindowgeometry --shell "$window")"
sleep 3  # the start pause, and the sound fonts loading after the first paint

# The finger square of a note in the window: the violin canvas stands at (210, 352),
# finger cell c of string s at (90 + 25c, 11s + 174) in it.
finger() { echo "15x15+$((X + 210 + 90 + 25 * $2))+$((Y + 352 + 11 * $1 + 174))"; }
finger_b=$(finger 4 5)      # B: C4 in first position, G string, fifth cell
finger_semi=$(finger 3 6)   # ;: G#4, D string, sixth cell

shot clean
xdotool keydown b
sleep 1.2
shot b-held
xdotool keydown semicolon
sleep 0.8
shot b-and-semicolon-held
xdotool keyup b
sleep 0.5
xdotool keyup semicolon
sleep 0.5
shot released
xdotool key Return
sleep 0.5

same clean b-held "$finger_b" && fail "no finger drawn while B is held"
same clean b-and-semicolon-held "$finger_semi" && fail "no finger drawn while ; is held"
same clean released "$finger_b" || fail "the finger of B stayed on the violin"
same clean released "$finger_semi" || fail "the finger of ; stayed on the violin"

# The live player's notes: each key started once however long the X server repeated
# it, at the tuning table's pitch, and ended once; Return sweeps, then plays C6.
p() { "$cli" tuning --json | tr -d ' \n' | grep -o '"p":\[[^]]*' | cut -d[ -f2 | cut -d, -f$(($1 + 1)); }
live=$(awk '$2 == 0 && $3 == "note" && $4 != 0 { print $4, $5 }' "$work/trace")
expected="$(p 60) 100
$(p 68) 100
$(p 60) 0
$(p 68) 0"
got=$(echo "$live" | head -4)
[ "$got" = "$expected" ] || fail "live notes were
$got
expected
$expected"
[ "$(echo "$live" | tail -2)" = "$(p 84) 100
$(p 84) 0" ] || fail "Return did not play C6 after its sweep: $(echo "$live" | tail -2)"

peak=$(sox -t raw -r 44100 -e signed -b 16 -c 2 "$work/sound.raw" -n stat 2>&1 | awk '/Maximum amplitude/ { print $3 }')
awk -v p="${peak:-0}" 'BEGIN { exit !(p > 0.01) }' || fail "the captured sound is silent (peak ${peak:-none})"
awk -v p="${peak:-1}" 'BEGIN { exit !(p < 0.95) }' || fail "the captured sound clips (peak ${peak:-none})"

[ "$failures" -eq 0 ] && echo "keyboard under Xvfb: notes, fingers and sound as expected (peak $peak)"
exit $((failures > 0))
