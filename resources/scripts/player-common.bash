# Shared by the MIDI and AIFF scripts beside this file; sourced, never run on its own.
# The scripts are started without arguments from a terminal window, so each one finds its
# file by itself (the newest one in the usual folders) and lets the user confirm or type another.
# A file given as the first argument is taken as it is, which also lets them run unattended.

# Fails with one sentence when a tool the script needs is not installed.
need_tool() {  # tool debian-package purpose
  command -v "$1" >/dev/null 2>&1 && return 0
  echo "$1 が見つからないため$3できません（Debian では sudo apt install $2 で入ります）。" >&2
  exit 1
}

# The SoundFonts the program itself plays with: LIRENZA_SOUNDFONT (colon-separated) or
# Debian's FluidR3 GM and GS fonts. Sets the array sound_fonts; fails when none exists.
find_sound_fonts() {
  local listed=${LIRENZA_SOUNDFONT:-/usr/share/sounds/sf2/FluidR3_GM.sf2:/usr/share/sounds/sf2/FluidR3_GS.sf2}
  local font
  sound_fonts=()
  IFS=: read -r -a listed_fonts <<<"$listed"
  for font in "${listed_fonts[@]}"; do
    [[ -f $font ]] && sound_fonts+=("$font")
  done
  if (( ${#sound_fonts[@]} == 0 )); then
    echo "サウンドフォントが見つかりません（fluid-soundfont-gm を入れるか、LIRENZA_SOUNDFONT に .sf2 ファイルを指定してください）。" >&2
    exit 1
  fi
}

# The newest file with one of the given extensions in the current folder, the home folder
# and its Documents, Music and Desktop folders; empty when there is none.
newest_file() {  # extension...
  local folder ext file newest="" newest_time=0 time
  for folder in "$PWD" "$HOME" "$HOME/Documents" "$HOME/Music" "$HOME/Desktop"; do
    [[ -d $folder ]] || continue
    for ext in "$@"; do
      for file in "$folder"/*."$ext"; do
        [[ -f $file ]] || continue
        time=$(stat -c %Y -- "$file" 2>/dev/null) || continue
        if (( time > newest_time )); then newest=$file; newest_time=$time; fi
      done
    done
  done
  printf '%s' "$newest"
}

# Sets chosen_file from the argument, or from the user's answer at a terminal (the newest
# file found is the default), or, without a terminal, from the newest file found.
choose_file() {  # argument kind extension...
  local argument=$1 kind=$2
  shift 2
  chosen_file=$argument
  if [[ -z $chosen_file ]]; then
    local found
    found=$(newest_file "$@")
    if [[ -t 0 ]]; then
      local answer
      if [[ -n $found ]]; then
        read -r -p "${kind}ファイルのパス（Enter で $found）: " answer || answer=""
        chosen_file=${answer:-$found}
      else
        read -r -p "${kind}ファイルのパス: " answer || answer=""
        chosen_file=$answer
      fi
    else
      chosen_file=$found
    fi
  fi
  # A file dropped on the terminal arrives quoted and followed by a space; ~ is not expanded by read.
  chosen_file=${chosen_file%" "}
  [[ $chosen_file == \'*\' ]] && chosen_file=${chosen_file:1:${#chosen_file}-2}
  [[ $chosen_file == "~/"* ]] && chosen_file=$HOME/${chosen_file:2}
  if [[ -z $chosen_file ]]; then
    echo "${kind}ファイルが見つからないため、何もせずに終わります。" >&2
    exit 1
  fi
  if [[ ! -f $chosen_file ]]; then
    echo "${kind}ファイル「$chosen_file」がありません。" >&2
    exit 1
  fi
}

# FluidSynth's audio output. LIRENZA_AUDIO_OUTPUT=null renders into nothing (for machines
# without a sound card); otherwise FluidSynth picks the desktop's sound server.
fluidsynth_output_options() {
  if [[ ${LIRENZA_AUDIO_OUTPUT:-} == null ]]; then
    printf '%s\n' -a file -o audio.file.name=/dev/null
  fi
}
