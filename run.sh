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
quiet() { "$@" >"$log" 2>&1 || { tail -n 60 "$log"; exit 1; }; }
echo "building (the first time takes some minutes) ..."
quiet cmake --preset release
quiet cmake --build "$build"
quiet cmake --install "$build" --prefix "$stage/Vorel"

# The server keeps its state beside the portable folder, so that passwords changed yesterday still hold.
coproc SERVER { exec "$stage/Vorel/vorel-course-server" --port "${VOREL_PORT:-0}" --sample \
  --data "$stage/CourseServer" --templates "$stage/Vorel/SysData/VorelTemplates" 2>"$stage/course-server.log"; }
server=$SERVER_PID
finish() { kill "$server" 2>/dev/null || true; rm -f "$log"; }
trap finish EXIT
read -r line <&"${SERVER[0]}" || { cat "$stage/course-server.log"; exit 1; }
address="${line##* }"

# What a school delivers: its address and its name, so that no question comes first. The recent list stays.
ini="$stage/Vorel/AppInfo.ini"
school="$("$stage/Vorel/vorel-course-server" --print-sample-school)"
recent="$(iconv -f GB18030 -t UTF-8 "$ini" 2>/dev/null | sed -n '/^\[VorelRecentProject\]/,$p' || true)"
printf '[SysInfo]\r\nServerURL=http://%s\r\nProvince=0\r\nSchoolName=%s\r\n%s' "$address" "$school" "$recent" |
  iconv -f UTF-8 -t GB18030 >"$ini"

# The browser engine's own sandbox refuses to work for root.
[ "$(id -u)" -eq 0 ] && export QTWEBENGINE_DISABLE_SANDBOX=1
export QT_MEDIA_BACKEND=ffmpeg

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  "$stage/Vorel/Vorel" "$@"
  exit
fi

echo "no display: going through a course in the real windows under a virtual one ..."
work="$(mktemp -d "$stage/journey-XXXXXX")"
export QT_PLUGIN_PATH="$PWD/$build/lib/plugins" QT_QPA_GENERIC_PLUGINS=voreljourney
export VOREL_JOURNEY_FOLDER="$work"
xvfb-run -a -s "-screen 0 1280x900x24" "$stage/Vorel/Vorel"
cat "$work/result.txt"
