#!/usr/bin/env bash
# The troubles that the program may have with its course server, one run of the program each.
#   trials.sh BUILD_FOLDER [TRIAL...]
# A lost session takes three minutes, and so does a silence while editing: the program asks the server no sooner.
set -euo pipefail
. "$(dirname "$0")/stage.sh"
all=(hanging-server lost-session silent-while-editing server-away-at-close killed-while-editing slow-compiler)
lay_out "$1" "$1/trials"
shift
[ $# -eq 0 ] || all=("$@")

# The course that all of them open.
start_server
"$root/scripts/write-appinfo.sh" "$stage" "$address"
play new-course "$place/course" 240
stop_server
course="$(find "$stage/Projects" -name '*.vcp')"
export VOREL_JOURNEY_COURSE="$course"
cp -r "$stage" "$place/Fresh"
cp -r "$place/CourseServer" "$place/FreshServer"

failed=0
for trial in "${all[@]}"; do
  rm -rf "$stage" "$place/CourseServer"
  cp -r "$place/Fresh" "$stage"
  cp -r "$place/FreshServer" "$place/CourseServer"
  start_server
  echo "== $trial"
  play "$trial" "$place/$trial" 300 || failed=1
  # The next start belongs to it.
  [ "$trial" != killed-while-editing ] || play kept-text "$place/kept-text" 120 || failed=1
  stop_server
done
echo "screenshots: $place/*/shots"
exit $failed
