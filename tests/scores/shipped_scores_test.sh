#!/usr/bin/env bash
# Usage: shipped_scores_test.sh SCORES_DIR LIRENZA_CLI
# Checks each shipped score as the library and the MIDI export will meet it.
set -u
scores=$1 cli=$2
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }

# group<TAB>row<TAB>bank<TAB>program of every instrument the menus offer.
"$cli" instruments | awk -F'\t' 'NR > 1 { print $1 "\t" $2 "\t" $4 "\t" $5 }' >"$work/instruments"
[[ -s $work/instruments ]] || { echo "no instrument list from $cli" >&2; exit 1; }

# The library shows one genre folder per button; each must offer something, and a score
# anywhere else would never be listed.
for n in 0 1 2 3 4 5 6 7 8 9; do
  compgen -G "$scores/Score0$n/*.note" >/dev/null || fail "genre folder Score0$n holds no score"
done
while IFS= read -r -d '' stray; do
  fail "$stray lies outside the genre folders and is never listed"
done < <(find "$scores" -name '*.note' ! -path "$scores/Score0[0-9]/*" -print0)

count=0
for score in "$scores"/Score0[0-9]/*.note; do
  [[ -e $score ]] || continue
  count=$((count + 1))
  name=$(basename "$score" .note)

  if ! "$cli" inspect --strict "$score" >"$work/listing" 2>"$work/err"; then
    fail "$score does not load cleanly: $(<"$work/err")"; continue
  fi
  if ! "$cli" midi --strict "$score" -o "$work/score.mid" 2>"$work/err"; then
    fail "$score gives no MIDI file: $(<"$work/err")"; continue
  fi
  if ! midicsv "$work/score.mid" >"$work/score.csv" 2>"$work/err"; then
    fail "$score gives a MIDI file midicsv cannot read: $(<"$work/err")"; continue
  fi

  # The MIDI file sounds the notes the score lists, in playing order.
  listed=$(awk -F'\t' '$1 ~ /^[0-9]+$/ && $5 != 0 { print $4 }' "$work/listing")
  sounded=$(awk -F', *' '$3 == "Note_on_c" && $6 != 0 { print $5 }' "$work/score.csv")
  [[ -n $listed ]] || fail "$score has no sounding note"
  [[ $listed == "$sounded" ]] || fail "$score: the MIDI file's notes differ from the score's"

  # The fields after the notes: title, remarks, instrument menus, tempo, key, time.
  IFS=';' read -r _ title remarks group row tempo key time <"$score"
  [[ $title == "$name" ]] || fail "$score: title '$title' differs from the name the library lists"
  [[ -n $remarks && $remarks != "作曲家/解説" ]] || fail "$score names no composer or work"
  program=$(awk -F'\t' -v g="$group" -v r="$row" '$1 == g && $2 == r && $3 == 0 { print $4 }' "$work/instruments")
  if [[ -z $program ]]; then
    fail "$score: instrument menus $group/$row name no General MIDI instrument"
  elif ! grep -Eq "^1, [0-9]+, Program_c, 0, $program\$" "$work/score.csv"; then
    fail "$score: the MIDI file does not choose program $program of menus $group/$row"
  fi

  # Notes as the window writes them in this key: a line the signature alters carries its
  # shift (an own sign there can only be a natural), other lines none; the pitch is the
  # sum of line, sign and signature; every note lies on the violin's fingerboard.
  awk -v key="$key" -v score="$score" '
    BEGIN {
      split("5 0 7 2 9 4 11", sharps, " "); split("11 4 9 2 7 0 5", flats, " ")
      if (key >= 1 && key <= 7) { shift = 1; for (i = 1; i <= key; i++) altered[sharps[i]] = 1 }
      else if (key >= 8 && key <= 14) { shift = -1; for (i = 1; i <= key - 7; i++) altered[flats[i]] = 1 }
      bad = 0
    }
    {
      split($0, sections, ";"); n = split(sections[1], records, " ")
      for (r = 1; r <= n; r++) {
        split(records[r], f, ",")
        if (f[9] == "0") continue
        pitch = f[4]; line = f[5]; sf = f[6]; sign = f[7]; ks = f[8]
        want = (line % 12) in altered ? shift : 0
        if (ks != want) { print score ": " f[11] " ignores the key signature"; bad++ }
        else if (ks != 0 && sign != 0 && sign != 3) { print score ": " f[11] " repeats the signature with its own sign"; bad++ }
        if (pitch != line + sf + ks) { print score ": " f[11] " sounds " pitch ", not its line and signs"; bad++ }
        if (pitch < 55 || pitch > 108) { print score ": " f[11] " lies off the violin"; bad++ }
      }
    }
    END { exit bad > 0 }' "$score" >"$work/notes" || fail "$(<"$work/notes")"
done
(( count >= 20 )) || fail "only $count shipped scores"

(( failures == 0 )) && echo "$count shipped scores checked"
exit $(( failures > 0 ))
