#!/usr/bin/env bash
# Converts a MIDI file to an AIFF file beside it (or to the second argument): FluidSynth renders
# it with the program's SoundFonts, then SoX writes the AIFF.
set -u
# shellcheck source=player-common.bash
source "$(dirname -- "${BASH_SOURCE[0]}")/player-common.bash"

echo "MIDI ファイルを AIFF ファイルに変換します。"
need_tool fluidsynth fluidsynth "MIDI ファイルを音にすることが"
need_tool sox sox "AIFF ファイルを書くことが"
find_sound_fonts
choose_file "${1:-}" "MIDI " mid midi
aiff=${2:-${chosen_file%.*}.aiff}

work=$(mktemp -d) || { echo "一時フォルダを作れませんでした。" >&2; exit 1; }
trap 'rm -rf -- "$work"' EXIT
if ! fluidsynth -n -i -q -r 44100 -F "$work/render.wav" "${sound_fonts[@]}" "$chosen_file" >/dev/null ||
   [[ ! -s $work/render.wav ]]; then
  echo "FluidSynth が「$chosen_file」を音にできませんでした。" >&2
  exit 1
fi
if ! sox -q "$work/render.wav" -t aiff "$aiff"; then
  echo "SoX が「$aiff」を書けませんでした。" >&2
  exit 1
fi
echo "書き出しました: $aiff"
