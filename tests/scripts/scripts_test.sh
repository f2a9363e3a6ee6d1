#!/usr/bin/env bash
# Usage: scripts_test.sh SCRIPTS_DIR LIRENZA_CLI
set -u
scripts=$1 cli=$2
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }

# A PATH holding every system command except the named ones (plus any fakes put in it).
stripped_path() {  # dir tool...
  local dir=$1 tool; shift
  mkdir -p "$dir"
  for tool in /usr/bin/* /usr/sbin/*; do ln -sf "$tool" "$dir/"; done
  for tool in "$@"; do rm -f "$dir/$tool"; done
}

# Runs a script with stdin off the terminal; sets status, out and err.
run() {  # env-assignments... -- script args...
  local envs=()
  while [[ $1 != -- ]]; do envs+=("$1"); shift; done
  shift
  env "${envs[@]}" LIRENZA_AUDIO_OUTPUT=null HOME="$work/home" "$@" >"$work/out" 2>"$work/err" </dev/null
  status=$?
  out=$(<"$work/out") err=$(<"$work/err")
}

mkdir -p "$work/home" "$work/samples"
cd "$work/samples" || exit 1
if ! "$cli" kestra "C498 E498 G498" -o tune.note >/dev/null || ! "$cli" midi tune.note -o tune.mid >/dev/null; then
  echo "cannot make the sample MIDI file" >&2; exit 1
fi

# --- Playing and converting a sample file ---
run -- "$scripts/PlayMidi.command" tune.mid
[[ $status == 0 && $out == *tune.mid* ]] || fail "PlayMidi exited $status: '$out' '$err'"
run -- "$scripts/MidiToAiff.command" tune.mid
[[ $status == 0 && $out == *tune.aiff* ]] || fail "MidiToAiff exited $status: '$out' '$err'"
if [[ -f tune.aiff ]]; then
  [[ $(soxi -t tune.aiff) == aiff ]] || fail "MidiToAiff wrote a $(soxi -t tune.aiff) file"
  # Three crotchets: a few seconds of sound, not an empty or silent file.
  seconds=$(soxi -D tune.aiff)
  awk -v s="$seconds" 'BEGIN { exit !(s > 1 && s < 10) }' || fail "AIFF lasts $seconds s"
  peak=$(sox tune.aiff -n stat 2>&1 | awk '/Maximum amplitude/ { print $3 }')
  awk -v p="$peak" 'BEGIN { exit !(p > 0.01) }' || fail "AIFF is silent (peak $peak)"
else
  fail "MidiToAiff wrote no tune.aiff"
fi
run -- "$scripts/PlayAiff.command" tune.aiff
[[ $status == 0 && $out == *tune.aiff* ]] || fail "PlayAiff exited $status: '$out' '$err'"

# Without an argument and without a terminal, the newest MIDI file is the one converted.
mkdir -p "$work/home/Music" && cp tune.mid "$work/home/Music/older.mid" && touch -d '1 hour ago' "$work/home/Music/older.mid"
cp tune.mid "$work/home/newer.mid"
(cd "$work/home" && run -- "$scripts/MidiToAiff.command"
 [[ $status == 0 && -f newer.aiff && ! -f Music/older.aiff ]] || { echo "FAIL: newest file not chosen: $err" >&2; exit 1; }) ||
  failures=$((failures + 1))

# A file that does not exist is refused, not passed on to the tool.
run -- "$scripts/PlayAiff.command" "$work/none.aiff"
[[ $status != 0 && $err == *none.aiff* ]] || fail "missing AIFF: status $status, '$err'"

# --- Missing tools and SoundFonts: one sentence on stderr, no output file ---
while read -r script removed; do
  bin=$work/bin-$script-$removed
  stripped_path "$bin" "$removed"
  rm -f tune.aiff
  run PATH="$bin" -- "$bin/bash" "$scripts/$script" tune.mid
  [[ $status != 0 ]] || fail "$script without $removed exited 0"
  [[ $(wc -l <"$work/err") == 1 && $err == *"${removed%% *}"* ]] ||
    fail "$script without $removed said: '$err'"
  [[ ! -e tune.aiff ]] || fail "$script without $removed still wrote an AIFF"
done <<'CASES'
PlayMidi.command fluidsynth
MidiToAiff.command fluidsynth
MidiToAiff.command sox
PlayAiff.command sox
CASES
"$cli" midi tune.note -o tune.mid >/dev/null
for script in PlayMidi.command MidiToAiff.command; do
  run LIRENZA_SOUNDFONT="$work/absent.sf2" -- "$scripts/$script" tune.mid
  [[ $status != 0 && $(wc -l <"$work/err") == 1 && $err == *LIRENZA_SOUNDFONT* ]] ||
    fail "$script without SoundFonts: status $status, '$err'"
done

# --- SetVolume: the preferred mixer that works, with the level as a percentage ---
# Fake mixers log their arguments; a name listed in $work/broken fails, in $work/stuck hangs.
volume_bin=$work/volume-bin
stripped_path "$volume_bin" wpctl pactl amixer
make_mixer() {
  cat >"$volume_bin/$1" <<FAKE
#!/bin/bash
grep -qx $1 "$work/stuck" 2>/dev/null && exec sleep 30
grep -qx $1 "$work/broken" 2>/dev/null && exit 1
echo "$1 \$*" >>"$work/mixer.log"
FAKE
  chmod +x "$volume_bin/$1"
}
while read -r present broken stuck level expected; do
  rm -f "$volume_bin"/{wpctl,pactl,amixer} "$work/mixer.log"
  IFS=, read -r -a names <<<"$present"
  for name in "${names[@]}"; do [[ $name == - ]] || make_mixer "$name"; done
  tr , '\n' <<<"$broken" >"$work/broken"
  tr , '\n' <<<"$stuck" >"$work/stuck"
  start=$SECONDS
  run PATH="$volume_bin" LIRENZA_MIXER_TIMEOUT=1 -- "$volume_bin/bash" "$scripts/SetVolume" "$level"
  log=$(cat "$work/mixer.log" 2>/dev/null)
  case $expected in
    fails) [[ $status != 0 && -z $log && $(wc -l <"$work/err") == 1 ]] ||
             fail "SetVolume $level with '$present': status $status, log '$log', '$err'" ;;
    *) [[ $status == 0 && $log == "$expected" ]] ||
         fail "SetVolume $level with '$present' (broken $broken, stuck $stuck): status $status, log '$log', wanted '$expected'" ;;
  esac
  (( SECONDS - start <= 4 )) || fail "SetVolume $level with stuck '$stuck' took $((SECONDS - start)) s"
done <<'CASES'
wpctl,pactl,amixer - - 7 wpctl set-volume @DEFAULT_AUDIO_SINK@ 100%
wpctl,pactl,amixer - - 0 wpctl set-volume @DEFAULT_AUDIO_SINK@ 0%
wpctl,pactl,amixer wpctl - 4 pactl set-sink-volume @DEFAULT_SINK@ 57%
wpctl,pactl,amixer - wpctl 1 pactl set-sink-volume @DEFAULT_SINK@ 14%
amixer - - 3 amixer -q sset Master 43%
wpctl,pactl,amixer wpctl,pactl,amixer - 5 fails
- - - 5 fails
wpctl,pactl,amixer - - 8 fails
wpctl,pactl,amixer - - x fails
wpctl,pactl,amixer - - -1 fails
CASES

if (( failures )); then echo "$failures failure(s)" >&2; exit 1; fi
echo "all script checks passed"
