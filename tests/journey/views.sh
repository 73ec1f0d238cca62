#!/usr/bin/env bash
# Shows every view of a node in the real program, and takes a picture of each: what the browser engine shows, what the
# player does, what neither does, and the windows of their own.
#   views.sh BUILD_FOLDER [PLACE]
set -euo pipefail
. "$(dirname "$0")/stage.sh"
lay_out "$1" "${2:-$1/views}"

material="$place/material"
mkdir -p "$material/媒体.files"
clip="$root/tests/platform_ui/media/clip.wmv"
cp "$clip" "$material/媒体.files/课.wmv"
if command -v ffmpeg >/dev/null; then
  ffmpeg -v error -y -f lavfi -i testsrc=d=60:s=640x480:r=25 -c:v wmv2 -b:v 500k "$material/课 #1.wmv"
else
  cp "$clip" "$material/课 #1.wmv"
fi
printf 'RIFF....AVI LIST' >"$material/坏.avi"
printf 'FWS' >"$material/演示.swf"
cp "$here/picture.png" "$material/图.png"
printf '课前请先阅读。\n' >"$material/README"
printf 'x' | tee "$material/讲义.doc" "$material/资料.pdf" >"$material/数据.xyz"
cat >"$material/媒体.htm" <<'PAGE'
<html><head><meta charset="utf-8"></head><body><h1>媒体</h1>
<embed src="媒体.files/课.wmv" width="240" height="160">
<object classid="clsid:D27CDB6E-AE6D-11cf-96B8-444553540000" width="240" height="160">
<param name="movie" value="媒体.files/演示.swf"><embed src="媒体.files/演示.swf" width="240" height="160"></object>
<object classid="clsid:CFCDAA03-8BE4-11cf-B84B-0020AFBBCCFA" width="240" height="160"></object>
<video src="媒体.files/没有.mp4" width="240" height="160"></video><bgsound src="媒体.files/曲.mid">
<p><a href="媒体.files/课.wmv">下载录像</a></p></body></html>
PAGE

start_server
"$root/scripts/write-appinfo.sh" "$stage" "$address"
play new-course "$place/course" 240
export VOREL_JOURNEY_MATERIAL="$material"
play views "$place/shown" 300
echo "screenshots: $place/shown/shots"
