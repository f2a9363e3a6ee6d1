#!/usr/bin/env bash
# Installs every Debian package Lirenza needs to build, run and test.
# Runs as root, or through sudo when it is there. Safe to run again.
set -euo pipefail

packages=(
  build-essential cmake pkg-config ninja-build
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev libgl-dev qt6-translations-l10n
  libfluidsynth-dev libglib2.0-dev fluidsynth fluid-soundfont-gm fluid-soundfont-gs
  libasound2-dev libsndfile1-dev
  libgtest-dev googletest
  fonts-ipafont-gothic fonts-ipaexfont lilypond-fonts
  midicsv xvfb xdotool x11-apps x11-utils sox imagemagick xterm
  libx11-dev libxdamage-dev libxcb1-dev
  desktop-file-utils appstream xdg-utils shared-mime-info libfile-mimeinfo-perl file
  poppler-utils
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: every package is already installed"
  exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if command -v sudo >/dev/null 2>&1; then as_root=(sudo); else
    echo "install-deps: run as root (or install sudo) to install: ${missing[*]}" >&2
    exit 1
  fi
fi
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -q
"${as_root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
