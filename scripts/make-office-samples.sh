#!/usr/bin/env bash
# Makes the presentations of tests/office/data anew, from one text: four slides, of which the third is hidden; a
# table, a list, speaker's notes, a link, and a title with marks that a page must escape. Needs LibreOffice.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

slide() {
  local number=$1 style=$2 title=$3 body=$4 more=${5:-}
  cat <<END
<draw:page draw:name="page$number" draw:style-name="$style" draw:master-page-name="Default">
<draw:frame presentation:class="title" svg:width="24cm" svg:height="3cm" svg:x="2cm" svg:y="1cm"><draw:text-box>
<text:p>$title</text:p></draw:text-box></draw:frame>
<draw:frame svg:width="20cm" svg:height="8cm" svg:x="2cm" svg:y="5cm"><draw:text-box>$body</draw:text-box></draw:frame>
$more</draw:page>
END
}

{
  cat <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
  xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0"
  xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"
  xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0"
  xmlns:draw="urn:oasis:names:tc:opendocument:xmlns:drawing:1.0"
  xmlns:presentation="urn:oasis:names:tc:opendocument:xmlns:presentation:1.0"
  xmlns:xlink="http://www.w3.org/1999/xlink"
  xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0"
  xmlns:svg="urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0"
  office:version="1.2" office:mimetype="application/vnd.oasis.opendocument.presentation">
<office:automatic-styles>
<style:page-layout style:name="P"><style:page-layout-properties fo:page-width="28cm" fo:page-height="15.75cm"/></style:page-layout>
<style:style style:name="shown" style:family="drawing-page"/>
<style:style style:name="hidden" style:family="drawing-page"><style:drawing-page-properties presentation:visibility="hidden"/></style:style>
</office:automatic-styles>
<office:master-styles><style:master-page style:name="Default" style:page-layout-name="P"/></office:master-styles>
<office:body><office:presentation>
END
  slide 1 shown '第一章 绪论' '<text:p>什么是网络？</text:p>' \
    '<presentation:notes><draw:frame presentation:class="notes" svg:width="9cm" svg:height="9cm" svg:x="1cm" svg:y="9cm"><draw:text-box><text:p>讲稿不外传</text:p></draw:text-box></draw:frame></presentation:notes>'
  slide 2 shown '第二章 A&lt;B &amp; "C"' \
    '<text:list><text:list-item><text:p>物理层</text:p></text:list-item><text:list-item><text:p>链路层</text:p><text:list><text:list-item><text:p>以太网</text:p></text:list-item></text:list></text:list-item></text:list>' \
    '<draw:frame svg:width="10cm" svg:height="3cm" svg:x="15cm" svg:y="11cm"><table:table><table:table-column/><table:table-column/><table:table-row><table:table-cell><text:p>表甲</text:p></table:table-cell><table:table-cell><text:p>表乙</text:p></table:table-cell></table:table-row></table:table></draw:frame>'
  slide 3 hidden '备用的一页' '<text:p>不给学生看</text:p>'
  slide 4 shown '第三章 应用' \
    '<text:p>见<text:a xlink:type="simple" xlink:href="http://example.org/?a=1&amp;b=2">网站</text:a></text:p>'
  echo '</office:presentation></office:body></office:document>'
} >"$work/slides.fodp"

for filter in odp 'pptx:Impress MS PowerPoint 2007 XML'; do
  soffice "-env:UserInstallation=file://$work/profile" --headless --convert-to "$filter" --outdir "$work/out" \
    "$work/slides.fodp" >/dev/null 2>&1
done
mkdir -p tests/office/data
cp "$work/out/slides.odp" "$work/out/slides.pptx" tests/office/data/
