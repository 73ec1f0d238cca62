#!/usr/bin/env bash
# The troubles that the program may have with its course server, one run of the program each, and what the person saw.
#   trials.sh BUILD_FOLDER [TRIAL...]
# A lost session takes three minutes, and so does a silence while editing: the program asks the server no sooner.
set -euo pipefail
. "$(dirname "$0")/stage.sh"
all=(no-server hanging-server garbage wrong-password initial-password second-person renamed lost-session
  silent-while-editing server-away-at-close)
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
  rm -rf "$stage" "$place/CourseServer" "$place/held" "$place/enough"
  cp -r "$place/Fresh" "$stage"
  cp -r "$place/FreshServer" "$place/CourseServer"
  garbage=
  case $trial in
    no-server) ;;
    garbage)
      # Answers whatever comes with bytes of its own, at the address that the program knows.
      perl -MIO::Socket::INET -e '$s = IO::Socket::INET->new(LocalAddr => "127.0.0.1", LocalPort => shift, Listen => 5,
        ReuseAddr => 1) or die; while ($c = $s->accept) { sysread($c, $b, 4096); print $c "\x00\xff<<>>\r\n" x 50; close $c }' \
        "${address##*:}" &
      garbage=$!
      ;;
    *) start_server ;;
  esac
  if [ "$trial" = second-person ]; then
    cp -r "$stage" "$place/Other"
    mkdir -p "$place/other"
    (
      stage="$place/Other"
      USER=other play hold "$place/other" 240
    ) &
    other=$!
    for _ in $(seq 100); do [ -e "$place/held" ] && break || sleep 0.5; done
  fi
  echo "== $trial"
  play "$trial" "$place/$trial" 300 || failed=1
  cat "$place/$trial/seen.txt"
  [ "$trial" = second-person ] && { wait "$other" || failed=1; }
  [ -z "$garbage" ] || kill "$garbage"
  stop_server
done
echo "screenshots: $place/*/shots"
exit $failed
