#!/usr/bin/env bash
# A course from its creation to its site in the real windows: lays out the portable folder of a build in a fresh place,
# starts the course server, lets the plug-in play the teacher in two runs of the program, and opens the site.
#   journey.sh BUILD_FOLDER [PLACE]
# Ends with the paths of course, site and screenshots.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
build="$(cd "$1" && pwd)"
place="${2:-$build/journey}"
rm -rf "$place"
mkdir -p "$place"
log="$place/log.txt"
stage="$place/Vorel"
cmake --install "$build" --prefix "$stage" >"$log" 2>&1 || { tail "$log"; exit 1; }
cp "$here/picture.png" "$place/校园 照片.png"

coproc SERVER { exec "$stage/vorel-course-server" --port 0 --sample --sample-school 示范大学 --data "$place/CourseServer" \
  --templates "$stage/SysData/VorelTemplates" 2>>"$log"; }
server=$SERVER_PID
trap 'kill "$server" 2>/dev/null || true' EXIT
read -r line <&"${SERVER[0]}"
"$root/scripts/write-appinfo.sh" "$stage" "${line##* }"

[ "$(id -u)" -eq 0 ] && export QTWEBENGINE_DISABLE_SANDBOX=1
export QT_MEDIA_BACKEND=ffmpeg VOREL_JOURNEY_FOLDER="$place" VOREL_JOURNEY_PASSWORD=123456
for part in 1 2; do
  rm -f "$place/part.txt"
  env VOREL_JOURNEY_PART=$part QT_PLUGIN_PATH="$build/lib/plugins" QT_QPA_GENERIC_PLUGINS=voreljourney \
    timeout 240 "$root/scripts/with-display.sh" "$stage/Vorel" >>"$log" 2>&1 || true
  if [ "$(cat "$place/part.txt" 2>/dev/null)" != ok ]; then
    cat "$place/part.txt" 2>/dev/null || echo "the program ended before its time"
    tail -n 30 "$log"
    echo "screenshots: $place/shots"
    exit 1
  fi
done

fact() { sed -n "s/^$1: //p" "$place/facts.txt" | tail -n 1; }
"$root/scripts/with-display.sh" "$build/bin/vorel-site-check" "$(fact site)/index.html" \
  "本课程面向全校本科生，讲授数据结构与算法。" "$place/shots" 2>>"$log"
echo "course: $(fact course)"
echo "site: $(fact site)"
echo "screenshots: $place/shots"
