#!/usr/bin/env bash
# Builds Vorel, lays out its portable folder, starts a local course server with a sample school, and starts the
# program against it. Without a display it goes through a whole course in the real windows under a virtual one, and
# ends with three lines: where the course, its site and the screenshots lie.
set -euo pipefail
cd "$(dirname "$0")"
scripts/setup.sh run

build=build/release
stage="$PWD/build/stage"
log="$(mktemp)"
trap 'rm -f "$log"' EXIT
quiet() { "$@" >"$log" 2>&1 || { tail -n 60 "$log"; exit 1; }; }
echo "building (the first time takes some minutes) ..."
quiet cmake --preset release
quiet cmake --build "$build" --target portable

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  quiet cmake --build "$build" --target voreljourney vorel-site-check
  echo "no display: going through a course in the real windows under a virtual one ..."
  exec tests/journey/journey.sh "$build" "$stage/journey"
fi

quiet cmake --install "$build" --prefix "$stage/Vorel"
# The server keeps its state beside the portable folder, so that a password changed yesterday still holds.
coproc SERVER { exec "$stage/Vorel/vorel-course-server" --port 0 --sample --sample-school 示范大学 --data "$stage/CourseServer" \
  --templates "$stage/Vorel/SysData/VorelTemplates" 2>"$stage/course-server.log"; }
server=$SERVER_PID
trap 'kill "$server" 2>/dev/null || true; rm -f "$log"' EXIT
read -r line <&"${SERVER[0]}" || { cat "$stage/course-server.log"; exit 1; }
scripts/write-appinfo.sh "$stage/Vorel" "${line##* }"

# The browser engine's own sandbox refuses to work for root.
[ "$(id -u)" -eq 0 ] && export QTWEBENGINE_DISABLE_SANDBOX=1
export QT_MEDIA_BACKEND=ffmpeg
"$stage/Vorel/Vorel" "$@"
