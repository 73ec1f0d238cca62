#!/usr/bin/env bash
# Records a lecture in the real program and its recorder, from slides and a film that is there, looks at it in the
# preview, whose slides follow the film, and compiles the course.
#   lecture.sh BUILD_FOLDER [PLACE]
set -euo pipefail
. "$(dirname "$0")/stage.sh"
lay_out "$1" "${2:-$1/lecture}"

material="$place/material"
mkdir -p "$material"
slide() { printf '<draw:page draw:master-page-name="m"><draw:frame svg:x="2cm" svg:y="2cm" svg:width="24cm" svg:height="4cm"
  presentation:class="title"><draw:text-box><text:p>%s</text:p></draw:text-box></draw:frame></draw:page>' "$1"; }
ns=urn:oasis:names:tc:opendocument:xmlns
printf '<?xml version="1.0" encoding="UTF-8"?><office:document xmlns:office="%s:office:1.0" xmlns:draw="%s:drawing:1.0"
  xmlns:text="%s:text:1.0" xmlns:style="%s:style:1.0" xmlns:svg="%s:svg-compatible:1.0"
  xmlns:fo="%s:xsl-fo-compatible:1.0" xmlns:presentation="%s:presentation:1.0" office:version="1.2"
  office:mimetype="application/vnd.oasis.opendocument.presentation"><office:automatic-styles>
  <style:page-layout style:name="p"><style:page-layout-properties fo:page-width="28cm" fo:page-height="21cm"/>
  </style:page-layout></office:automatic-styles><office:master-styles><style:master-page style:name="m"
  style:page-layout-name="p"/></office:master-styles><office:body><office:presentation>%s%s%s</office:presentation>
  </office:body></office:document>' $ns $ns $ns $ns $ns $ns $ns \
  "$(slide 第一讲　面向对象程序设计)" "$(slide 类与对象)" "$(slide 继承与多态)" >"$material/讲稿.fodp"
soffice --headless "-env:UserInstallation=file://$place/office" --convert-to ppt --outdir "$material" \
  "$material/讲稿.fodp" >>"$log" 2>&1
ffmpeg -v error -y -f lavfi -i testsrc=d=14:s=320x240:r=15 -f lavfi -i sine=d=14 -c:v mpeg4 -c:a aac "$material/课 录.mp4"

start_server
"$root/scripts/write-appinfo.sh" "$stage" "$address"
play new-course "$place/course" 240
export VOREL_JOURNEY_MATERIAL="$material" VOREL_JOURNEY_LECTURE="$material"
play lecture "$place/made" 300
folder="$(dirname "$(find "$stage/Projects" -name lecture.asf)")"
find "$folder" -type f -printf '%P  %s\n' | sort
iconv -f GB18030 "$folder/CourseInfo/Outline.js"
# A web server that is given the site has all that a student needs.
"$stage/VorelCompiler" --silent "$(find "$stage/Projects" -name '*.vcp')" | tee "$place/report.txt"
page="$(grep -rl --include=index.html 'id="v-lecture"' "$stage/Projects")"
grep -q 'ShowSlide(3)' "$page"
test -s "$(find "$(dirname "$page")" -name lecture.mp4)"
ffprobe -v error -show_chapters -of compact "$folder/lecture.asf"
echo "lecture: $folder"
echo "page: $page"
echo "screenshots: $place/made/recorder $place/made/shots"
