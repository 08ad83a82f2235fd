#!/usr/bin/env bash
# Installs the Debian packages Mirtex++ builds, tests and runs with. Quiet and quick when every
# package is already present; uses sudo when not run as root.
set -euo pipefail

packages=(
    g++ cmake ninja-build ccache pkg-config make
    qt6-base-dev qt6-base-dev-tools qt6-l10n-tools qt6-tools-dev-tools libgl-dev
    libqscintilla2-qt6-dev qt6-webengine-dev qt6-translations-l10n
    libqt6printsupport6 poppler-utils
    libicu-dev libssl-dev rapidjson-dev
    libcmark-gfm-dev libcmark-gfm-extensions-dev
    libtesseract-dev tesseract-ocr-ita tesseract-ocr-eng
    libgtest-dev libgmock-dev libbenchmark-dev
    xvfb xauth fonts-dejavu-core
    clang-format-14
    clang-16 libfuzzer-16-dev libclang-rt-16-dev
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$p")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
