# Sourced by the tests that drive the real program under a virtual display.
#
#   source xvfb_session.sh TEST_NAME EXTRA_TOOL...
#
# Checks the tools, makes $work (kept with KEEP_WORK=1) and $shots ($LIRENZA_SHOTS, or
# $work), gives fail() and $failures, stops the program of $app_pid and the display at
# exit, and starts Xvfb (1400x900) with DISPLAY and the xcb platform set for what follows.
# shot NAME grabs the program's window (X, Y, WIDTH, HEIGHT set by the test); same A B BOX
# says whether the box looks the same in two shots.
session_name=$1
shift
for tool in Xvfb xdotool import compare "$@"; do
  command -v "$tool" >/dev/null || { echo "$session_name: $tool is missing; run scripts/install-deps.sh" >&2; exit 1; }
done
work=$(mktemp -d)
shots=${LIRENZA_SHOTS:-$work}
mkdir -p "$shots"
xvfb_pid= app_pid=
stop_program() {
  [ -n "$app_pid" ] && kill "$app_pid" 2>/dev/null && wait "$app_pid" 2>/dev/null
  app_pid=
}
finish_session() {
  stop_program
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null && wait "$xvfb_pid" 2>/dev/null
  if [ -n "${KEEP_WORK:-}" ]; then echo "kept $work" >&2; else rm -rf "$work"; fi
}
trap finish_session EXIT
failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }
shot() { import -window root -crop "${WIDTH}x${HEIGHT}+${X}+${Y}" +repage "$shots/$1.png"; }
same() { [ "$(compare -metric AE -extract "$3" "$shots/$1.png" "$shots/$2.png" null: 2>&1)" = 0 ]; }

exec {display_fd}<> <(:)
Xvfb -displayfd "$display_fd" -screen 0 1400x900x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
xvfb_pid=$!
read -r -t 10 -u "$display_fd" display_number || { echo "Xvfb did not start" >&2; exit 1; }
export DISPLAY=":$display_number"
export QT_QPA_PLATFORM=xcb  # the test suite runs the others offscreen
