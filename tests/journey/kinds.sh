#!/usr/bin/env bash
# Makes a node of each kind of content with the wizard of the real program, and prints what the store and the folders hold
# afterwards.
#   kinds.sh BUILD_FOLDER [PLACE]
set -euo pipefail
. "$(dirname "$0")/stage.sh"
lay_out "$1" "${2:-$1/kinds}"

office() { # FORMAT FILE...
  local format="$1"
  shift
  soffice --headless "-env:UserInstallation=file://$place/office" --convert-to "$format" --outdir "$material" "$@" \
    >>"$log" 2>&1
}
material="$place/material"
mkdir -p "$material"/{站点/首页,站点/图,课件,目录/第一章,网页.files,page}
cp "$here/picture.png" "$material/站点/图/校园 照片.png"
cp "$here/picture.png" "$material/网页.files/图.png"
cp "$here/picture.png" "$material/page/"
printf '课前请先阅读。\n' >"$material/说明 文字.txt"
page() { printf '<html><head><meta charset="utf-8"></head><body>%s</body></html>' "$1"; }
page '<h1>带图网页</h1><img src="网页.files/图.png">' >"$material/网页.htm"
page '<h1>课程站点</h1><img src="../图/校园 照片.png"><a href="other.html">下一页</a>' >"$material/站点/首页/index.html"
page '另一页' >"$material/站点/首页/other.html"
for name in 课.cml 课.arx; do : >"$material/课件/$name"; done
page '<h1>课件首页</h1>' >"$material/课件/main.htm"
page '第一节' >"$material/目录/第一章/第一节.htm"
printf 'a\n' >"$material/目录/阅读.txt"
page '<h1>数据结构讲义</h1><p>线性表与<b>树</b>。</p><table border="1"><tr><td>栈</td><td>后进先出</td></tr></table><img src="picture.png">' \
  >"$material/page/讲义.html"
printf '姓名,成绩\n张三,92\n李四,88\n' >"$material/page/成绩.csv"
office 'doc:MS Word 97' "$material/page/讲义.html"
office 'xls' --infilter='CSV:44,34,76' "$material/page/成绩.csv"
cp "$(find /usr/lib/libreoffice/share/template -name Piano.otp | head -n 1)" "$material/page/演示.otp"
office 'ppt' "$material/page/演示.otp"
cp "$(find /usr/lib/libreoffice/share/template -name Candy.otp | head -n 1)" "$material/长演示.odp"

start_server
"$root/scripts/write-appinfo.sh" "$stage" "$address"
play new-course "$place/course" 240
course="$(dirname "$(find "$stage/Projects" -name '*.vcp')")"
store="$(find "$course" -name '*.mdb' | head -n 1)"
nodes="$(find "$course" -type d -name NodeResource)"
before="$(sqlite3 "$store" 'SELECT max(Id) FROM Book')"
export VOREL_JOURNEY_MATERIAL="$material"
play kinds "$place/made" 400
# Titles are enciphered in the store; the rows come in the order in which they were made.
paste -d '|' <(sed -n 's/^made: //p' "$place/made/facts.txt") <(sqlite3 "$store" "
  SELECT Id, Type, Path, OpenType, FileName, Comment, CAST([Size] AS INT)
  FROM Book WHERE ParentId = 3 AND Id > $before ORDER BY Id") |
  while IFS='|' read -r title id row; do
    echo "$title | N$id | ${row//|/ | }"
    find "$nodes/N$id" -mindepth 1 \( -type d -printf '    %P/\n' -o -printf '    %P  %s\n' \) | sort | head -n 40
  done
sqlite3 "$store" "SELECT Id, ParentId, Type, Path FROM Book WHERE ParentId > $before ORDER BY Id"
echo "screenshots: $place/*/shots"
