#!/usr/bin/env bash
# Usage: desktop_files_test.sh SOURCE_DIR BUILD_DIR APP_ID PROGRAM_NAME
# Installs the desktop component into a scratch prefix, then checks it as a desktop would
# see it, with nothing from the user's own settings in the way.
set -u
source=$1 build=$2 app_id=$3 program=$4
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }

for tool in desktop-file-validate update-desktop-database appstreamcli update-mime-database xdg-mime mimetype file; do
  command -v "$tool" >/dev/null || { echo "FAIL: $tool is missing: run scripts/install-deps.sh" >&2; exit 1; }
done

prefix=$work/prefix
if ! cmake --install "$build" --component desktop --prefix "$prefix" >"$work/install.log" 2>&1; then
  cat "$work/install.log" >&2
  echo "FAIL: cmake --install of the desktop component" >&2
  exit 1
fi
share=$prefix/share
launcher=$share/applications/$app_id.desktop
metainfo=$share/metainfo/$app_id.metainfo.xml

# A generic desktop, so xdg-mime answers from the XDG databases alone.
unset XDG_CURRENT_DESKTOP DESKTOP_SESSION KDE_FULL_SESSION GNOME_DESKTOP_SESSION_ID XDG_SESSION_DESKTOP
export HOME=$work/home XDG_DATA_HOME=$work/home/data XDG_CONFIG_HOME=$work/home/config XDG_CONFIG_DIRS=$work/none
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"

# --- The files as their own validators see them.
desktop-file-validate --no-hints "$launcher" || fail "desktop-file-validate $launcher"
appstreamcli validate --strict --no-net --no-color "$metainfo" >"$work/appstream.log" 2>&1 ||
  { cat "$work/appstream.log" >&2; fail "appstreamcli validate $metainfo"; }

# --- The pieces must name each other: the launcher runs the installed program and shows
# the installed icon, the AppStream data launches the installed launcher.
png_size() { file -b "$1" | sed -n 's/^PNG image data, \([0-9]*\) x \([0-9]*\),.*/\1x\2/p'; }
key() { sed -n "s/^$1=//p" "$launcher" | head -n 1; }
[ "$(key Exec | cut -d' ' -f1)" = "$program" ] || fail "Exec runs '$(key Exec)', the program is $program"
icon=$(key Icon)
[ -f "$share/icons/hicolor/scalable/apps/$icon.svg" ] || fail "no scalable icon named '$icon'"
[ -f "$share/icons/hicolor/48x48/apps/$icon.png" ] || fail "no 48x48 icon named '$icon', the size every theme falls back on"
for png in "$share"/icons/hicolor/*x*/apps/"$icon".png; do
  folder=$(basename "$(dirname "$(dirname "$png")")")
  drawn=$(png_size "$png")
  [ "$drawn" = "$folder" ] || fail "$png is ${drawn:-no PNG}, its folder says $folder"
done
grep -q 'viewBox="0 0 ' "$share/icons/hicolor/scalable/apps/$icon.svg" || fail "the scalable icon has no viewBox"
launchable=$(sed -n 's:.*<launchable type="desktop-id">\(.*\)</launchable>.*:\1:p' "$metainfo")
[ -f "$share/applications/$launchable" ] || fail "the AppStream data launches '$launchable', which is not installed"

# The screenshot is published from the repository: the file must be there, as large as
# the AppStream data says.
image=$(grep -o '<image [^<]*</image>' "$metainfo")
shot=$(sed -n 's:.*>https\://raw.githubusercontent.com/[^/]*/[^/]*/[^/]*/\(.*\)</image>:\1:p' <<<"$image")
said=$(sed -n 's/.*width="\([0-9]*\)" height="\([0-9]*\)".*/\1x\2/p' <<<"$image")
if [ -n "$shot" ] && [ -f "$source/$shot" ]; then
  [ "$(png_size "$source/$shot")" = "$said" ] || fail "the screenshot is not $said as the AppStream data says"
else
  fail "the screenshot '$image' is not a file of the repository"
fi

# --- File types: a score is known by its name only, so only the name may decide.
mkdir -p "$work/files"
printf '%s\n' '120,105,0,60,60,0,0,0,9,8,C498 152,99,0,62,62,0,0,0,9,2,D492 ;演奏;作曲家/解説;1;41;7;0;0' >"$work/files/two notes.note"
printf '%s\n' ';;;1;41;7;0;0' >"$work/files/empty.note"
cp "$work/files/two notes.note" "$work/files/きらきら星.note"
cp "$work/files/two notes.note" "$work/files/score.note.txt"
cp "$work/files/two notes.note" "$work/files/notes"

filetype() { XDG_DATA_DIRS=$1 xdg-mime query filetype "$2" 2>/dev/null; }
# Before the database is built the prefix must not answer for the score: a check that
# passes here would prove nothing below.
[ "$(filetype "$share:/usr/share" "$work/files/empty.note")" != application/x-lirenza-note ] ||
  fail "the score's type is known before the prefix's database is built"
update-mime-database "$share/mime" || fail "update-mime-database $share/mime"
while IFS='|' read -r name expected; do
  got=$(filetype "$share:/usr/share" "$work/files/$name")
  [ "$got" = "$expected" ] || fail "'$name' is '$got', expected '$expected'"
done <<'TABLE'
two notes.note|application/x-lirenza-note
empty.note|application/x-lirenza-note
きらきら星.note|application/x-lirenza-note
score.note.txt|text/plain
notes|text/plain
TABLE
grep -qx 'application/x-lirenza-note text/plain' "$share/mime/subclasses" ||
  fail "a score is not also plain text in the built database, so text editors are not offered for it"

# --- The launcher is the one a desktop offers for a score.
update-desktop-database "$share/applications" || fail "update-desktop-database"
default=$(XDG_DATA_DIRS=$share:/usr/share xdg-mime query default application/x-lirenza-note 2>/dev/null)
[ "$default" = "$app_id.desktop" ] || fail "a score opens with '$default', not $app_id.desktop"

if [ "$failures" -ne 0 ]; then
  echo "$failures failure(s)" >&2
  exit 1
fi
echo "desktop files: all checks passed"
