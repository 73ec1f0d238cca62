#!/bin/sh
# Renders Preview.jpg and PreviewImgs/*.jpg of every delivered template from its own pages and skin, in a course
# folder of the shape that the program makes. Needs the Debian packages chromium, imagemagick, jpegoptim and
# fonts-noto-cjk. With names of templates as arguments only those are rendered.
set -eu
cd "$(dirname "$0")/../sysdata/data/VorelTemplates"
sample=$(cd ../../../packaging && pwd)/preview-site.html
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
sandbox=
[ "$(id -u)" != 0 ] || sandbox=--no-sandbox

# shot HTML OUT: a window of 1024 by 768, brought down to 640 by 480.
shot() {
    # shellcheck disable=SC2086 # empty means no argument
    chromium --headless $sandbox --disable-gpu --hide-scrollbars --user-data-dir="$work/profile" \
        --window-size=1024,768 --screenshot="$work/shot.png" "file://$1" >"$work/log" 2>&1 || {
        cat "$work/log"
        exit 1
    }
    convert "$work/shot.png" -crop 1024x768+0+0 +repage -resize 640x480 -unsharp 0x0.5 -quality 84 "$2"
    jpegoptim -q --strip-all "$2"
}

[ $# -gt 0 ] || set -- *
for template in "$@"; do
    course=$work/NodeResource
    rm -rf "$course" "$template/PreviewImgs"
    mkdir -p "$course/N4" "$template/PreviewImgs"
    cp -r "$template/Skin/skin" "$course/"
    for page in "$template"/eht/htm/*.htm; do
        # The program tells its browser the code page; here the page has to.
        { printf '<meta charset="gbk">'; cat "$page"; } >"$course/N4/Content.htm"
        shot "$course/N4/Content.htm" "$template/PreviewImgs/$(basename "$page" .htm).jpg"
    done
    # The whole template: the frame of a compiled site around its introduction.
    iconv -f gbk -t utf-8 "$template/eht/htm/课程简介.htm" | sed '/class="v-hint"/d' >"$work/page"
    sed -e "/@PAGE@/{r $work/page" -e 'd}' "$sample" >"$course/N4/Site.html"
    shot "$course/N4/Site.html" "$template/Preview.jpg"
done
