#!/usr/bin/env bash
# Scores opened from outside while the program runs: the desktop's xdg-open (through the
# installed launcher and MIME type) and a second `lirenza FILE` from a terminal both land
# in the one running window, and no second window ever shows.
#
# The window must then look as it does when the program is started with that score
# itself: title field and staff are compared with such a start, pixel for pixel.
#
# Usage: open_from_outside_xvfb_test.sh PROGRAM BUILD_DIR  (screenshots in $LIRENZA_SHOTS if set)
set -u
program=$1 build=$2
source "$(dirname "$0")/xvfb_session.sh" open_from_outside xdg-open xdg-mime update-mime-database update-desktop-database

# The desktop as a user's would be: the launcher and the MIME type installed and their
# databases built, the program on PATH under its own name, nothing else of the machine's
# user settings in the way.
prefix=$work/prefix
cmake --install "$build" --component desktop --prefix "$prefix" >"$work/install.log" 2>&1 ||
  { cat "$work/install.log" >&2; echo "FAIL: cmake --install of the desktop component" >&2; exit 1; }
update-mime-database "$prefix/share/mime" >/dev/null 2>&1 || fail "update-mime-database"
update-desktop-database "$prefix/share/applications" || fail "update-desktop-database"
mkdir -p "$work/bin"
ln -s "$program" "$work/bin/lirenza"
unset XDG_CURRENT_DESKTOP DESKTOP_SESSION KDE_FULL_SESSION GNOME_DESKTOP_SESSION_ID XDG_SESSION_DESKTOP BROWSER
export PATH="$work/bin:$PATH"
export HOME=$work/home XDG_DATA_HOME=$work/home/data XDG_CONFIG_HOME=$work/home/config
export XDG_RUNTIME_DIR=$work/home/run XDG_DATA_DIRS=$prefix/share:/usr/share XDG_CONFIG_DIRS=$work/none
mkdir -m 700 -p "$XDG_RUNTIME_DIR" "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"
export LIRENZA_AUDIO_DRIVER=file LIRENZA_AUDIO_CAPTURE=/dev/null

# Two scores with titles and notes of their own, in a folder whose name has a space.
mkdir -p "$work/楽譜 箱"
first="$work/楽譜 箱/朝の歌.note"
second="$work/楽譜 箱/second.note"
printf '%s\n' '120,105,0,60,60,0,0,0,9,8,C498 152,99,0,62,62,0,0,0,9,2,D492 184,92,0,64,64,0,0,0,9,2,E492 ;朝の歌;作者不詳;1;41;7;0;0' >"$first"
printf '%s\n' '120,85,0,67,67,0,0,0,9,4,G494 264,78,0,69,69,0,0,0,9,4,A494 ;Second Song;Someone;1;41;7;0;0' >"$second"

[ "$(xdg-mime query filetype "$first" 2>/dev/null)" = application/x-lirenza-note ] ||
  fail "the desktop does not know $first as a score"

# Every shown window of the program's class, whichever process made it; the close
# question carries no name of its own, so a search by name would miss it.
windows() { xdotool search --onlyvisible --class '^lirenza$' 2>/dev/null; }
wait_for_window() {
  for _ in $(seq 120); do  # up to a minute on a loaded machine
    [ -n "$(windows)" ] && return 0
    kill -0 "$app_pid" 2>/dev/null || break
    sleep 0.5
  done
  echo "no window came up; the program said:" >&2
  cat "$work/program.log" >&2
  return 1
}
start_program() {
  "$program" "$@" >"$work/program.log" 2>&1 &
  app_pid=$!
  wait_for_window || exit 1
  window=$(windows | head -1)
  eval "$(xdotool getwindowgeometry --shell "$window")"
  sleep 3  # the start pause and the sound fonts, so nothing moves after the shot
}
# The title field and the staff of the window; they must match as a whole.
title_box=275x15+100+30 staff_box=868x140+120+60
# The close question the running window asks before a score replaces its staff: the
# start's captions and every opened score count as changes, so it comes each time. Its
# default button is "保存しない", so Return answers it without saving.
answer_close_question() {
  for _ in $(seq 20); do
    local dialog
    dialog=$(xdotool search --onlyvisible --pid "$app_pid" 2>/dev/null | grep -vx "$window" | head -1)
    if [ -n "$dialog" ]; then
      xdotool windowfocus --sync "$dialog" 2>/dev/null
      xdotool key Return
      return 0
    fi
    sleep 0.5
  done
  return 1
}

# shows_alone SHOT REFERENCE HOW: the one window, shot now, shows the score of REFERENCE.
shows_alone() {
  sleep 2
  shot "$1"
  same "$1" "$2" "$title_box" || fail "$3: the title field does not show the score's title"
  same "$1" "$2" "$staff_box" || fail "$3: the staff does not show the score's notes"
  [ "$(windows | wc -l)" -eq 1 ] || fail "$3: $(windows | wc -l) windows show, not one"
}

# --- How each score looks when the program starts with it.
start_program "$first"
shot first-alone
stop_program
start_program "$second"
shot second-alone
stop_program
same first-alone second-alone "$title_box" && fail "the two scores' titles look alike; the comparison would prove nothing"

# --- The running window takes a score from the desktop.
start_program
shot empty
same empty first-alone "$title_box" && fail "the empty window already shows the first score's title"
xdg-open "$first" >"$work/xdg-open.log" 2>&1 || fail "xdg-open $first: $(cat "$work/xdg-open.log")"
answer_close_question || fail "no close question came before the score was opened over the unsaved start"
shows_alone opened-by-desktop first-alone xdg-open

# --- And from a terminal: the second program hands the file over and ends at once.
started=$(date +%s%N)
timeout 20 lirenza "$second" >"$work/second.log" 2>&1
status=$?
ms=$((($(date +%s%N) - started) / 1000000))
[ "$status" -eq 0 ] || fail "lirenza FILE beside a running program ended with $status: $(cat "$work/second.log")"
answer_close_question || fail "no close question came before the score replaced the one opened"
shows_alone opened-from-terminal second-alone "lirenza FILE"
[ "$(pgrep -c -f "^$work/bin/lirenza|^$program" 2>/dev/null)" -le 1 ] || fail "a second program is still running"
kill -0 "$app_pid" 2>/dev/null || fail "the running program ended"

[ "$failures" -eq 0 ] && echo "open from outside: desktop and terminal opens reached the one window (hand-over ${ms} ms)"
exit $((failures > 0))
