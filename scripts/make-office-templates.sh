#!/usr/bin/env bash
# Makes the empty files of sysdata/data/OfficeTemplate anew: Template.doc, Template.ppt and Template.xls, which the
# wizard copies for a new document. Their makers' names and times are left out. Needs LibreOffice.
set -euo pipefail
cd "$(dirname "$0")/.."

target=sysdata/data/OfficeTemplate
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

names='xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
  xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0"
  xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"
  xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0"
  xmlns:draw="urn:oasis:names:tc:opendocument:xmlns:drawing:1.0"
  xmlns:presentation="urn:oasis:names:tc:opendocument:xmlns:presentation:1.0"
  xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0"
  xmlns:svg="urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0"'

# One file: its format, the styles and the body.
make_one() {
  local name=$1 ending=$2 type=$3 styles=$4 body=$5 filter=$6
  {
    echo '<?xml version="1.0" encoding="UTF-8"?>'
    echo "<office:document $names office:version=\"1.2\" office:mimetype=\"application/vnd.oasis.opendocument.$type\">"
    echo "$styles<office:body>$body</office:body></office:document>"
  } >"$work/$name.$ending"
  soffice "-env:UserInstallation=file://$work/profile" --headless --convert-to "$filter" --outdir "$work/out" \
    "$work/$name.$ending" >/dev/null 2>&1
}

# A4, in Chinese: what the fonts and the page are for whoever opens them.
paper='<office:styles><style:default-style style:family="paragraph"><style:text-properties
  style:font-name-asian="宋体" style:font-size-asian="10.5pt" fo:font-size="10.5pt" fo:language="en" fo:country="US"
  style:language-asian="zh" style:country-asian="CN"/></style:default-style></office:styles>
  <office:automatic-styles><style:page-layout style:name="P"><style:page-layout-properties fo:page-width="21cm"
  fo:page-height="29.7cm" fo:margin-top="2.54cm" fo:margin-bottom="2.54cm" fo:margin-left="3.17cm"
  fo:margin-right="3.17cm"/></style:page-layout></office:automatic-styles>
  <office:master-styles><style:master-page style:name="Standard" style:page-layout-name="P"/></office:master-styles>'
screen='<office:automatic-styles><style:page-layout style:name="P"><style:page-layout-properties fo:page-width="25.4cm"
  fo:page-height="14.288cm" style:print-orientation="landscape"/></style:page-layout></office:automatic-styles>
  <office:master-styles><style:master-page style:name="Default" style:page-layout-name="P"/></office:master-styles>'

make_one Template fodt text "$paper" '<office:text><text:p/></office:text>' 'doc:MS Word 97'
make_one Template fods spreadsheet '' \
  '<office:spreadsheet><table:table table:name="Sheet1"><table:table-row><table:table-cell/></table:table-row></table:table></office:spreadsheet>' \
  'xls:MS Excel 97'
make_one Template fodp presentation "$screen" \
  '<office:presentation><draw:page draw:name="page1" draw:master-page-name="Default"/></office:presentation>' \
  'ppt:MS PowerPoint 97'

mkdir -p "$target"
for ending in doc xls ppt; do
  if strings -el "$work/out/Template.$ending" | grep -q -e "$(id -un)" -e "$(hostname)"; then
    echo "Template.$ending names this machine" >&2
    exit 1
  fi
  cp "$work/out/Template.$ending" "$target/"
done
