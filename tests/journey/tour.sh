#!/usr/bin/env bash
# Opens every window of the shell once, with its picture, and fails on one that can't be used without a mouse or a screen.
#   tour.sh BUILD_FOLDER [PLACE]
# Prints each window with its default button and its controls in the order of the Tab key; "*" marks the focus.
set -euo pipefail
. "$(dirname "$0")/stage.sh"
lay_out "$1" "${2:-$1/tour}"
start_server
"$root/scripts/write-appinfo.sh" "$stage" "$address"
play tour "$place" 240
sed -n 's/^window: //p' "$place/facts.txt"
echo "screenshots: $place/shots"
