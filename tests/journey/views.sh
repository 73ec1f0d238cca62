#!/usr/bin/env bash
# Shows every view of a node in the real program, and takes a picture of each: what the browser engine shows, what the
# player does, what neither does, and the windows of their own.
#   views.sh BUILD_FOLDER [PLACE [FOLDER_FOR_THE_PICTURES]]
set -euo pipefail
. "$(dirname "$0")/stage.sh"
lay_out "$1" "${2:-$1/views}"
pictures="${3:-$place/pictures}"
# A lecture as the recorder makes it, and a presentation.
"$here/lecture.sh" "$1" "$place/lecture" >>"$log" 2>&1

material="$place/material"
mkdir -p "$material"/{媒体.files,框架.files,站点,课件}
clip="$root/tests/platform_ui/media/clip.wmv"
cp "$clip" "$material/媒体.files/课.wmv"
cp "$clip" "$material/框架.files/课.wmv"
if command -v ffmpeg >/dev/null; then
  ffmpeg -v error -y -f lavfi -i testsrc=d=60:s=640x480:r=25 -c:v wmv2 -b:v 500k "$material/课 #1.wmv"
else
  cp "$clip" "$material/课 #1.wmv"
fi
printf 'RIFF....AVI LIST' >"$material/坏.avi"
printf 'FWS' >"$material/演示.swf"
cp "$here/picture.png" "$material/图.png"
cp "$here/picture.png" "$material/站点/图.png"
printf '课前请先阅读。\n' >"$material/README"
printf '\0\1\2\377' >"$material/DATA"
printf 'x' | tee "$material/资料.pdf" "$material/框架.files/讲义.doc" >"$material/数据.xyz"
page() { printf '<html><head><meta charset="utf-8"></head>%s</html>' "$1"; }
page '<body><h1>课程站点</h1><p>第一讲　绪论</p><img src="图.png" width="320"><h2 id="第一章">第一章　绪论</h2>
<p style="height:900px">什么是程序</p><h2><a name="End">小结</a></h2><p style="height:600px">全课的要点</p></body>' \
  >"$material/站点/index.html"
page '<body style="margin:0"><a href="没有这一页.htm" style="display:block;padding:40px;height:800px"><h1>下一讲</h1></a></body>' \
  >"$material/断链.htm"
cp "$place/lecture/material/讲稿.ppt" "$material"
for name in 课.cml 课.arx; do : >"$material/课件/$name"; done
page '<body><h1>课件首页</h1></body>' >"$material/课件/main.htm"
page '<frameset cols="50%,*"><frame src="框架.files/讲义.doc"><frameset rows="50%,*"><frame src="框架.files/课.wmv">
<frame src="框架.files/没有.mp4"></frameset></frameset>' >"$material/框架.htm"
page '<body style="margin:0"><a href="http://example.org/课程/" style="display:block;padding:40px;height:800px">
<h1>相关课程</h1></a></body>' >"$material/链接.htm"
page '<body><h1>媒体</h1>
<embed src="媒体.files/课.wmv" width="240" height="160">
<object classid="clsid:D27CDB6E-AE6D-11cf-96B8-444553540000" width="240" height="160">
<param name="movie" value="媒体.files/演示.swf"><embed src="媒体.files/演示.swf" width="240" height="160"></object>
<object classid="clsid:CFCDAA03-8BE4-11cf-B84B-0020AFBBCCFA" width="240" height="160"></object>
<video src="媒体.files/没有.mp4" width="240" height="160"></video><bgsound src="媒体.files/曲.mid">
<p><a href="媒体.files/课.wmv">下载录像</a></p></body>' >"$material/媒体.htm"
page '<body><h1>数据结构讲义</h1><p>线性表与<b>树</b>。</p><table border="1"><tr><td>栈</td><td>后进先出</td></tr></table></body>' \
  >"$place/讲义.html"
soffice --headless "-env:UserInstallation=file://$place/office" --convert-to 'doc:MS Word 97' --outdir "$material" \
  "$place/讲义.html" >>"$log" 2>&1

# The program for documents that the desktop knows.
mkdir -p "$place/data/applications" "$place/config"
printf '[Default Applications]\napplication/msword=editor.desktop\n' >"$place/config/mimeapps.list"
printf '[Desktop Entry]\nType=Application\nName=editor\nExec=true %%f\n' >"$place/data/applications/editor.desktop"

start_server
"$root/scripts/write-appinfo.sh" "$stage" "$address"
play new-course "$place/course" 240
# A recorded lecture, of the last of the top nodes.
store="$(find "$stage/Projects" -name '*.mdb' | head -n 1)"
lecture="$(dirname "$(find "$place/lecture/Vorel/Projects" -ipath "*/noderesource/*" -name lecture.asf)")"
id="$(sqlite3 "$store" "SELECT Id FROM Book WHERE ParentId = 3 ORDER BY [Index] DESC LIMIT 1")"
nodes="$(find "$stage/Projects" -type d -iname noderesource)"
mkdir -p "$nodes/N$id"
cp -r "$lecture" "$nodes/N$id/lecture"
sqlite3 "$store" "UPDATE Book SET Type = 4, Path = 'N$id\\lecture', FileName = '', Comment = '' WHERE Id = $id"
# All programs but the one that records.
mkdir "$place/bin"
ln -s /usr/bin/* "$place/bin"
rm -f "$place/bin/ffmpeg"
export VOREL_JOURNEY_MATERIAL="$material"
PATH="$place/bin" play views "$place/shown" 300
mkdir -p "$pictures"
rm -f "$pictures"/*.png
cp "$place"/shown/shots/*.png "$pictures"
echo "screenshots: $pictures"
