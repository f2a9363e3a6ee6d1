#!/usr/bin/env bash
# Screenshots of Lirenza at work, for looking at: starts the program under its own
# Xvfb with a fresh HOME, takes the window at start and after the start pause, enters
# a short melody by double clicks on the staff, opens a note's menu, plays the melody
# in play mode and in edit mode, and takes the window while it plays and once
# stopped; then counts the wake-ups of the idle program. The pictures are the window
# alone, at 100 %, named in the order they were taken; those of open menus are the
# whole screen, as a menu may reach outside the window.
#
# Usage: scripts/window-shots.sh OUTPUT_FOLDER
#   LIRENZA_BUILD_DIR chooses the build (default: build/); the program must be built.
set -euo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
if [ $# -ne 1 ]; then
  echo "usage: $0 OUTPUT_FOLDER" >&2
  exit 2
fi
out=$(mkdir -p "$1" && cd "$1" && pwd)
build=${LIRENZA_BUILD_DIR:-$here/build}
program="$build/src/app/lirenza"
bash "$here/scripts/install-deps.sh" >/dev/null  # Xvfb, xdotool and ImageMagick's import
if [ ! -x "$program" ]; then
  echo "window-shots: $program is not built; run scripts/build.sh first" >&2
  exit 1
fi

work=$(mktemp -d)
xvfb_pid=
app_pid=
finish() {
  local status=$?
  if [ -n "$app_pid" ]; then kill "$app_pid" 2>/dev/null; wait "$app_pid" 2>/dev/null || true; fi
  if [ -n "$xvfb_pid" ]; then kill "$xvfb_pid" 2>/dev/null; wait "$xvfb_pid" 2>/dev/null || true; fi
  rm -rf "$work"
  exit "$status"
}
trap finish EXIT

# Xvfb picks a free display itself and writes its number to the pipe.
exec {display_fd}<> <(:)
Xvfb -displayfd "$display_fd" -screen 0 1400x900x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
xvfb_pid=$!
read -r -t 10 -u "$display_fd" display_number || { echo "window-shots: Xvfb did not start" >&2; exit 1; }
export DISPLAY=":$display_number"
export QT_QPA_PLATFORM=xcb  # whatever the caller's environment says

mkdir -p "$work/home/run"
chmod 700 "$work/home/run"
(cd "$work/home" && HOME="$work/home" XDG_RUNTIME_DIR="$work/home/run" LANG=C.UTF-8 \
  exec "$program" >"$out/lirenza.log" 2>&1) &
app_pid=$!

window=$(xdotool search --sync --onlyvisible --name '^Lirenza$' | head -1)
eval "$(xdotool getwindowgeometry --shell "$window")"  # X, Y, WIDTH, HEIGHT
echo "window $window at $X,$Y, ${WIDTH}x${HEIGHT} on display $DISPLAY"

shot() {  # shot NAME: the window's pixels as the screen shows them
  import -window root -crop "${WIDTH}x${HEIGHT}+${X}+${Y}" +repage "$out/$1.png"
  echo "  $out/$1.png"
}
# Window pixels, as the layout places its controls.
click_at() {  # click_at X Y [BUTTON] [REPEAT]
  xdotool mousemove "$((X + $1))" "$((Y + $2))" click --repeat "${4:-1}" --delay 90 "${3:-1}"
}

sleep 0.3
shot 01-start
sleep 2  # past the start pause: the sliders, group boxes and score list are shown
shot 02-after-start-pause

# A melody on the staff (its canvas stands at 120, 60 and is 868 x 140): one double
# click per note, left to right, rising and falling.
staff_left=120 staff_top=60
column=40
for row in 88 82 76 70 64 70 76 82 88 94; do
  click_at "$((staff_left + column))" "$((staff_top + row))" 1 2
  column=$((column + 32))
  sleep 0.15
done
xdotool mousemove "$((X + 600))" "$((Y + 400))"  # off the staff: no hover sound, no highlight
sleep 0.3
shot 03-notes-entered

# The menu of the first note, taken while open, then closed with Escape.
click_at "$((staff_left + 40 + 7))" "$((staff_top + 88))" 3
sleep 0.5
import -window root "$out/04-note-menu-screen.png"
echo "  $out/04-note-menu-screen.png"
xdotool key Escape
sleep 0.3

# Two menus of the menu bar (its strip stands at 84, 6): the file menu and the long
# scale menu, each taken open over the whole screen, then closed.
for menu in "125 file" "245 scales"; do
  set -- $menu
  click_at "$1" 17
  sleep 0.5
  import -window root "$out/04-menu-$2-screen.png"
  echo "  $out/04-menu-$2-screen.png"
  xdotool key Escape
  sleep 0.3
done

# Play loops the melody until Stop. In play mode the fingerboard follows it; in edit
# mode the staff lights each note as it sounds.
play_and_stop() {  # play_and_stop NAME
  click_at 924 286  # play
  for second in 1 2 3; do
    sleep 0.9
    shot "$1-$second"
  done
  click_at 887 286  # stop
  sleep 0.5
}
play_and_stop 05-playing-in-play-mode
click_at 48 527  # the mode button 編集 (edit)
sleep 0.3
play_and_stop 06-playing-in-edit-mode
click_at 48 505  # back to 演奏 (play)
xdotool mousemove "$((X + 600))" "$((Y + 400))"
sleep 1
shot 07-stopped

# Stopped, in play mode, nothing should tick: context switches of every thread of the
# program over five idle seconds.
switches() { cat /proc/"$app_pid"/task/*/status 2>/dev/null | awk '/ctxt_switches/ { n += $2 } END { print n + 0 }'; }
before=$(switches)
sleep 5
echo "wake-ups a second, stopped in play mode: $(( ($(switches) - before) / 5 ))"

echo "the program said:"
sed 's/^/  /' "$out/lirenza.log"
