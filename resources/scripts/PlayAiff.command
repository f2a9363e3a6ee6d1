#!/usr/bin/env bash
# Plays an AIFF file with SoX.
set -u
# shellcheck source=player-common.bash
source "$(dirname -- "${BASH_SOURCE[0]}")/player-common.bash"

echo "AIFF ファイルを再生します。"
need_tool sox sox "AIFF ファイルを再生"
choose_file "${1:-}" "AIFF " aiff aif
# LIRENZA_AUDIO_OUTPUT=null plays into nothing, for machines without a sound card.
if [[ ${LIRENZA_AUDIO_OUTPUT:-} == null ]]; then output=(-n); else output=(-d); fi

echo "再生中: $chosen_file"
if ! sox -q "$chosen_file" "${output[@]}"; then
  echo "SoX が「$chosen_file」を再生できませんでした。" >&2
  exit 1
fi
echo "再生を終えました。"
