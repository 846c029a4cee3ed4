#!/usr/bin/env bash
# Installs every Debian package the build, the program and the tests need.
# Idempotent and non-interactive; downloads nothing but Debian packages. Also makes the it_IT.UTF-8
# locale, under which the tests run a second time.
set -euo pipefail

PACKAGES=(
  build-essential cmake ninja-build pkg-config git
  qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite libgl-dev qt6-charts-dev libqt6opengl6-dev
  libsqlite3-dev libxlsxwriter-dev libpq-dev
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  clang libclang-rt-14-dev
  xvfb xauth fonts-dejavu-core tango-icon-theme
  poppler-utils unzip
  qt6-translations-l10n
  locales
)

missing=()
for p in "${PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# it_IT.UTF-8: enabled in /etc/locale.gen and generated, once.
if ! locale -a 2>/dev/null | grep -qi '^it_IT\.utf-\?8$'; then
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO="sudo"
  if grep -q '^# *it_IT.UTF-8 UTF-8' /etc/locale.gen; then
    $SUDO sed -i 's/^# *\(it_IT.UTF-8 UTF-8\)/\1/' /etc/locale.gen
  elif ! grep -q '^it_IT.UTF-8 UTF-8' /etc/locale.gen; then
    echo 'it_IT.UTF-8 UTF-8' | $SUDO tee -a /etc/locale.gen >/dev/null
  fi
  $SUDO locale-gen
fi
