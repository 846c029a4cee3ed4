#!/usr/bin/env bash
# Installs every Debian package the build, the program and the tests need.
# Idempotent and non-interactive; downloads nothing but Debian packages.
set -euo pipefail

PACKAGES=(
  build-essential cmake ninja-build pkg-config git
  qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite libgl-dev
  libsqlite3-dev libxlsxwriter-dev libpq-dev
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  clang libclang-rt-14-dev
  xvfb xauth fonts-dejavu-core tango-icon-theme
  qt6-translations-l10n
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
