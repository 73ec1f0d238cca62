#!/bin/sh
# Makes the pictures of SysData/Images, and the icon of each template, from the drawings in sysdata/art.
# Needs the Debian packages librsvg2-bin, imagemagick, jpegoptim and fonts-noto-cjk.
set -eu
cd "$(dirname "$0")/../sysdata"
images=data/Images
resource=$images/Resource
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# png DRAWING WIDTH HEIGHT OUT: OUT and, doubled, OUT@2x.
png() {
    rsvg-convert -w "$2" -h "$3" "$1" -o "$4.png"
    rsvg-convert -w $(($2 * 2)) -h $(($3 * 2)) "$1" -o "$4@2x.png"
}

# The same as 32-bit BMP whose header declares the alpha channel, which Qt and Windows both honour. What is clear
# is white as well, for a reader that takes white for clear.
bmp() {
    png "$1" "$2" "$3" "$work/bmp"
    for scale in "" "@2x"; do
        convert "$work/bmp$scale.png" -background white -alpha background -define bmp:format=bmp4 \
            -type TrueColorAlpha "BMP:$4$scale.bmp"
    done
}

rm -rf "$images"
mkdir -p "$images/HtmlEditorToolBarImgs" "$resource/Toolbar"

for drawing in art/breeze/*.svg art/own/editor/*.svg; do
    bmp "$drawing" 16 16 "$images/HtmlEditorToolBarImgs/$(basename "$drawing" .svg)"
done

for drawing in art/own/tree/*.svg; do
    png "$drawing" 18 18 "$resource/$(basename "$drawing" .svg)"
done
png art/own/children.svg 120 160 "$resource/324"
png art/own/splash.svg 480 300 "$resource/369"

# A toolbar picture in its three states: at rest, brighter under the pointer, grey and faint when disabled.
for drawing in art/own/toolbar/*.svg; do
    id=$(basename "$drawing" .svg)
    png "$drawing" 35 35 "$resource/Toolbar/$id"
    for scale in "" "@2x"; do
        convert "$resource/Toolbar/$id$scale.png" -modulate 108,130 "$resource/Toolbar/$id-hot$scale.png"
        convert "$resource/Toolbar/$id$scale.png" -modulate 110,0 -channel A -evaluate multiply 0.45 +channel \
            "$resource/Toolbar/$id-disabled$scale.png"
    done
done

# Below 48 pixels the logo loses its detail, so it has a drawing of its own there.
for size in 16 32; do rsvg-convert -w $size -h $size art/own/logo-small.svg -o "$resource/128-$size.png"; done
for size in 48 256; do rsvg-convert -w $size -h $size art/own/logo.svg -o "$resource/128-$size.png"; done
cp "$resource/128-256.png" "$resource/128.png"

# The question mark that a teacher puts into a page: GIF knows no half transparency, so its rim is mixed with
# white, the paper of nearly every page.
rsvg-convert -w 16 -h 16 art/own/editor/InsertHelp.svg -o "$work/help.png"
convert "$work/help.png" \( +clone -alpha extract -threshold 20% \) \
    \( -clone 0 -background white -alpha remove -alpha off \) -delete 0 +swap \
    -alpha off -compose CopyOpacity -composite -colors 32 "$images/Help.gif"

for scale in 1 2; do
    suffix=$([ $scale = 1 ] || echo @2x)
    rsvg-convert -w $((200 * scale)) -h $((150 * scale)) art/own/sorry.svg -o "$work/sorry.png"
    convert "$work/sorry.png" -background white -alpha remove -quality 92 -sampling-factor 4:4:4 \
        "$images/sorry$suffix.jpg"
done

for drawing in art/templates/*/icon.svg; do
    template=data/VorelTemplates/$(basename "$(dirname "$drawing")")
    mkdir -p "$template"
    bmp "$drawing" 32 32 "$template/icon"
done

# Dates inside the pictures would make every run differ.
find "$resource" -name '*.png' -exec mogrify -strip -define png:exclude-chunks=date,time {} +
jpegoptim -q --strip-all "$images"/*.jpg
