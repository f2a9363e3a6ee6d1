#!/usr/bin/env bash
# Usage: pdf_test.sh LIRENZA_CLI
# A short score gives one page, a long one all the sheets it needs; the notes are drawn
# as shapes at the page's resolution, not as screen pictures blown up; mistakes in the
# command line and unreadable files say what to do.
set -u
cli=$1
for tool in pdfinfo pdftoppm pdfimages convert; do
  command -v "$tool" >/dev/null || { echo "FAIL: $tool is missing: run scripts/install-deps.sh" >&2; exit 1; }
done
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }
unset DISPLAY WAYLAND_DISPLAY  # as on a server: no display at all

# A score of `bars` bars, a crotchet C5 at the start of each, written record by record.
score() {
  local bars=$1 out=$2
  awk -v bars="$bars" 'BEGIN {
    for (b = 0; b < bars; ++b) printf "%d,93,0,72,72,0,0,0,9,4,C594 ", 128 + 144 * b
    printf ";%d bars;test;5;0;7;0;0\n", bars }' >"$out"
}
pages() { pdfinfo "$1" 2>/dev/null | awk '/^Pages:/ { print $2 }'; }

score 30 "$work/30.note"
score 300 "$work/300.note"
"$cli" pdf "$work/30.note" -o "$work/30.pdf" || fail "pdf of 30 bars ended with $?"
mkdir "$work/out"
"$cli" pdf "$work/300.note" "$work/30.note" -d "$work/out" || fail "pdf -d ended with $?"
[ "$(pages "$work/30.pdf")" = 1 ] || fail "30 bars gave $(pages "$work/30.pdf") pages, not 1"
[ "$(pages "$work/out/300.pdf")" = 6 ] || fail "300 bars gave $(pages "$work/out/300.pdf") pages, not 6"
[ "$(pages "$work/out/30.pdf")" = 1 ] || fail "-d wrote no 30.pdf of one page"
pdfinfo "$work/30.pdf" | grep -q '^Title: *30 bars$' || fail "the PDF's title is not the score's"
pdfinfo "$work/30.pdf" | grep -q '^Page size: *595 x 842 pts (A4)' || fail "the page is not A4: $(pdfinfo "$work/30.pdf" | grep 'Page size')"
"$cli" pdf "$work/30.note" --paper letter -o "$work/letter.pdf" &&
  pdfinfo "$work/letter.pdf" | grep -q 'letter' || fail "--paper letter did not give a letter page"

# --- Drawn at the page's resolution: no picture in the file, only shapes and text, and
# at 300 dpi the first note's head is there, round: grey only along its edge.
images=$(pdfimages -list "$work/30.pdf" 2>/dev/null | tail -n +3 | wc -l)
[ "$images" = 0 ] || fail "the page holds $images raster pictures: the notes are screen pictures blown up"
pdftoppm -r 300 -gray -f 1 -l 1 "$work/30.pdf" "$work/page" && page=$(ls "$work"/page*.pgm | head -1)
if [ -n "${page:-}" ]; then
  # A4 at 300 dpi with 10 mm margins: the sheet's 855 pixels fill the 2244 of the
  # printable width, so the first head (sheet 91, 101) lies at about 357, 432; it sits
  # in a space of the staff, where an empty sheet has no ink.
  ink=$(convert "$page" -crop 14x10+350+427 -threshold 50% -format '%[fx:int((1-mean)*w*h)]' info: 2>/dev/null)
  [ "${ink:-0}" -gt 100 ] || fail "no note head where the first note of the score prints (ink ${ink:-none} of 140)"
else
  fail "pdftoppm could not render the page"
fi

# --- Mistakes: exit 2 with the usage, 1 for a file that cannot be read; no file written.
"$cli" pdf "$work/30.note" --paper a3 -o "$work/bad.pdf" 2>"$work/err"
[ $? = 2 ] && grep -q 'paper' "$work/err" || fail "--paper a3 was not refused with status 2"
"$cli" pdf "$work/missing.note" -o "$work/bad.pdf" 2>"$work/err"
[ $? = 1 ] && [ -s "$work/err" ] || fail "a missing score did not end with status 1 and a message"
[ -e "$work/bad.pdf" ] && fail "a failed run left a PDF behind"

if [ "$failures" -ne 0 ]; then
  echo "$failures failure(s)" >&2
  exit 1
fi
echo "pdf: page counts, page size, shapes and errors as expected"
