#!/usr/bin/env bash
# Plays a MIDI file through FluidSynth with the program's SoundFonts.
set -u
# shellcheck source=player-common.bash
source "$(dirname -- "${BASH_SOURCE[0]}")/player-common.bash"

echo "MIDI ファイルを FluidSynth で再生します。"
need_tool fluidsynth fluidsynth "MIDI ファイルを再生"
find_sound_fonts
choose_file "${1:-}" "MIDI " mid midi
mapfile -t output < <(fluidsynth_output_options)

echo "再生中: $chosen_file"
if ! fluidsynth -n -i -q "${output[@]}" "${sound_fonts[@]}" "$chosen_file"; then
  echo "FluidSynth が「$chosen_file」を再生できませんでした。" >&2
  exit 1
fi
echo "再生を終えました。"
