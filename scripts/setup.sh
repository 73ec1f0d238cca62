#!/usr/bin/env bash
# Installs the Debian packages that are missing. Sourced or called by run.sh and test.sh; does nothing where all is there.
#   setup.sh run     what building and running needs
#   setup.sh test    what the tests and checks need beside that
set -euo pipefail

build=(
  ccache cmake g++ ninja-build pkg-config
  libarchive-dev libcurl4-openssl-dev libgumbo-dev libpng-dev libx11-dev libsqlite3-dev libsqlitecpp-dev libssl-dev
  libavcodec-dev libavformat-dev libavutil-dev libswscale-dev
  libqt6opengl6-dev libgl-dev qt6-base-dev qt6-multimedia-dev qt6-webengine-dev qt6-webengine-dev-tools qt6-translations-l10n
  sqlite3 libgtest-dev libgmock-dev
  # What converts Office files, without windows of its own, and draws the slides.
  libreoffice-writer-nogui libreoffice-calc-nogui libreoffice-impress-nogui libreoffice-math-nogui poppler-utils librsvg2-bin
  # What writes a course as a Word document.
  pandoc
  # What encodes recorded lectures.
  ffmpeg
  # What the running program needs of a bare machine: fonts, pictures, a display to start under.
  fonts-noto-cjk qt6-image-formats-plugins libqt6svg6 shared-mime-info xvfb xauth openbox
)
tests=(clang-format dbus-daemon hugo openssl time xdotool)

wanted=("${build[@]}")
[ "${1:-run}" = "test" ] && wanted+=("${tests[@]}")

missing=()
for package in "${wanted[@]}"; do
  [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "setup: installing ${missing[*]}"
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
