#!/usr/bin/env bash
# A course from its creation to its site in the real windows: the plug-in plays the teacher in two runs of the program
# against the real course server, and the site is opened.
#   journey.sh BUILD_FOLDER [PLACE]
# Ends with the paths of course, site and screenshots.
set -euo pipefail
. "$(dirname "$0")/stage.sh"
lay_out "$1" "${2:-$1/journey}"
cp "$here/picture.png" "$place/校园 照片.png"
start_server
"$root/scripts/write-appinfo.sh" "$stage" "$address"

export VOREL_JOURNEY_PASSWORD=123456
for part in 1 2; do
  play $part "$place" 240
done

"$root/scripts/with-display.sh" "$build/bin/vorel-site-check" "$(fact "$place" site)/index.html" \
  "本课程面向全校本科生，讲授数据结构与算法。" "$place/shots" 2>>"$log"
echo "course: $(fact "$place" course)"
echo "site: $(fact "$place" site)"
echo "screenshots: $place/shots"
