#!/usr/bin/env bash
# Installs what a fresh Debian 12 needs to build, test and run Tornelia.
# Safe to run again: it asks apt only for what is missing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build
  qt6-base-dev qt6-base-dev-tools qt6-base-private-dev qt6-translations-l10n libgl-dev
  libgtest-dev libbenchmark-dev
  adwaita-icon-theme fonts-dejavu-core
  xvfb xauth xdotool imagemagick openbox xclip
  clang
  libhunspell-dev hunspell-it hunspell-en-us
  libzip-dev libsodium-dev zip unzip pkgconf
  poppler-utils unrtf
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ "${#missing[@]}" -eq 0 ]; then
  exit 0
fi

if [ "$(id -u)" -ne 0 ]; then
  echo "install-deps: missing packages: ${missing[*]}" >&2
  echo "install-deps: run as root (sudo bash scripts/install-deps.sh)" >&2
  exit 1
fi

export DEBIAN_FRONTEND=noninteractive
# The package lists are refreshed only when something has to be installed.
apt-get update
apt-get install -y --no-install-recommends "${missing[@]}"
