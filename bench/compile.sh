#!/usr/bin/env bash
# A course of 10,000 small pages compiled, beside Hugo (Debian's package) building the same pages from the same texts. Then
# both again after one page was edited. All in turn; prints medians in seconds, the most memory in MB, and the ratios.
# The peer is a theme that writes what a page of ours holds (header, the tree open at the page, its path, the text, its
# neighbours, footer, and one file of texts for a search), the way a fast theme does: the tree once for each section.
# Time goes into what a page holds, so a theme without navigation is no peer of a site with it; what Hugo takes with one is
# printed as well ("bare": title and text, sections list their pages), and no ratio is taken of that.
#   bench/compile.sh [ROUNDS [PLACE [PAGES]]]   build the preset "release" with VorelCompiler, bench_make_texts and
#                                               vorel_seed first; default: 5 rounds, /dev/shm, 10,000 pages
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "$0")/.."
build="$PWD/build/release"
rounds="${1:-5}"
pages="${3:-10000}"
work="$(mktemp -d "${2:-/dev/shm}/vorel-compile-XXXXXX")"
trap 'rm -rf "$work"' EXIT
export XDG_CACHE_HOME="$work/cache"

"$build/bin/bench_make_texts" "$work" "$build/sysdata/Data/DataBase/VorelCourse.mdb" "$pages"
cp "$build/bin/VorelCompiler" "$work/program/"
mkdir -p "$work/hugo/layouts/_default"
cat >"$work/hugo/config.toml" <<'END'
baseURL = "http://localhost/"
title = "数据结构"
languageCode = "zh-CN"
disableKinds = ["taxonomy", "term", "RSS", "sitemap", "404"]
[outputs]
home = ["HTML", "JSON"]
END
cat >"$work/hugo/layouts/_default/baseof.html" <<'END'
<!DOCTYPE html>
<html lang="zh-CN">
<head><meta charset="utf-8"><meta name="viewport" content="width=device-width, initial-scale=1">
<title>{{ .Title }} - {{ .Site.Title }}</title><link rel="stylesheet" href="/site.css"></head>
<body class="site">
<a class="skip" href="#content">跳到正文</a>
<header><p>示范大学</p><p><a href="/">{{ .Site.Title }}</a></p><p>主讲教师：李老师</p>
<form action="/search.html"><input type="search" name="q"><button>搜索</button></form></header>
<div class="layout">
{{ partialCached "tree.html" .CurrentSection .CurrentSection.RelPermalink }}
<main id="content"><nav><ol>{{ range .Ancestors.Reverse }}<li><a href="{{ .RelPermalink }}">{{ .Title }}</a></li>{{ end }}</ol></nav>
<h1>{{ .Title }}</h1>
{{ .Content }}{{ if .IsNode }}<ul class="children">{{ range .Pages.ByWeight }}<li><a href="{{ .RelPermalink }}">{{ .Title }}</a></li>{{ end }}</ul>{{ end }}
<nav class="pager">{{ with .PrevInSection }}<a href="{{ .RelPermalink }}">上一页 {{ .Title }}</a>{{ end }}
{{ with .NextInSection }}<a href="{{ .RelPermalink }}">下一页 {{ .Title }}</a>{{ end }}</nav></main>
</div>
<footer><p>示范大学 · {{ .Site.Title }} · 李老师</p></footer>
</body>
</html>
END
for kind in single list; do cp "$work/hugo/layouts/_default/baseof.html" "$work/hugo/layouts/_default/$kind.html"; done
rm "$work/hugo/layouts/_default/baseof.html"
# Once for each section, which is how a fast theme does it; ours marks the page itself in the tree.
mkdir "$work/hugo/layouts/partials"
cat >"$work/hugo/layouts/partials/tree.html" <<'END'
{{ $page := . }}<nav><ul class="tree">
{{ range .Site.Home.Sections.ByWeight }}{{ $open := or (eq $page .) (.IsAncestor $page) }}<li>{{ if $open }}<details open><summary>{{ end }}<a href="{{ .RelPermalink }}">{{ .Title }}</a>{{ if $open }}</summary><ul>
{{ range .Sections.ByWeight }}{{ $inner := or (eq $page .) (.IsAncestor $page) }}<li>{{ if $inner }}<details open><summary>{{ end }}<a href="{{ .RelPermalink }}">{{ .Title }}</a>{{ if $inner }}</summary><ul>
{{ range .RegularPages.ByWeight }}<li><a href="{{ .RelPermalink }}">{{ .Title }}</a></li>
{{ end }}</ul></details>{{ end }}</li>
{{ end }}</ul></details>{{ end }}</li>
{{ end }}</ul></nav>
END
cat >"$work/hugo/layouts/index.json" <<'END'
[{{ range $i, $page := .Site.RegularPages }}{{ if $i }},{{ end }}
{{ dict "title" .Title "address" .RelPermalink "text" .Plain | jsonify }}{{ end }}]
END

mkdir -p "$work/hugo/bare/_default"
cat >"$work/hugo/bare/_default/single.html" <<'END'
<!DOCTYPE html>
<html lang="zh-CN"><head><meta charset="utf-8"><title>{{ .Title }}</title></head>
<body><h1>{{ .Title }}</h1>{{ .Content }}{{ if .IsNode }}<ul>{{ range .Pages }}<li><a href="{{ .RelPermalink }}">{{ .Title }}</a></li>{{ end }}</ul>{{ end }}</body></html>
END
cp "$work/hugo/bare/_default/single.html" "$work/hugo/bare/_default/list.html"
cp "$work/hugo/layouts/index.json" "$work/hugo/bare/"

measure() { # NAME COMMAND...
  local name="$1"
  shift
  local begin="$EPOCHREALTIME" end
  /usr/bin/time -f '%M' -o "$work/time" "$@" >"$work/out.txt" 2>&1 || { cat "$work/out.txt"; exit 1; }
  end="$EPOCHREALTIME"
  [ "$round" -eq 0 ] || awk -v a="$begin" -v b="$end" '{ printf "%.3f %s\n", b - a, $1 }' "$work/time" >>"$work/$name.txt"
}
compile() { measure "$1" "$work/program/VorelCompiler" --silent "$work/course/course.vcp"; }
hugo_build() { measure "$1" hugo --quiet --source "$work/hugo" --destination "$work/hugo/public"; }
hugo_bare() { HUGO_LAYOUTDIR=bare measure "$1" hugo --quiet --source "$work/hugo" --destination "$work/hugo/bare-public"; }
edit() { # FILE of either side: a line more, written beside and put in its place, as editors do
  cp "$1" "$1.new"
  printf '<p>%s</p>\n' "$round" >>"$1.new"
  mv "$1.new" "$1"
}
ours="$work/course/Data/Courseware/NodeResource/N6/Content.htm"
theirs="$work/hugo/content/c1/s1/p1.html"
[ -f "$ours" ] && [ -f "$theirs" ]
# The first round only warms the caches.
for round in $(seq 0 "$rounds"); do
  rm -rf "$work/course/课程网站" "$work/course/申报网站" "$work/hugo/public" "$work/hugo/bare-public"
  compile ours
  hugo_build hugo
  edit "$ours"
  compile ours-again
  edit "$theirs"
  hugo_build hugo-again
  hugo_bare bare
done
echo "pages: $(find "$work/course/课程网站" -name '*.htm*' | wc -l) ours, $(find "$work/hugo/public" -name '*.html' | wc -l) Hugo's;" \
  "$(du -sm --apparent-size "$work/course/课程网站" | cut -f1) MB ours, $(du -sm --apparent-size "$work/hugo/public" | cut -f1) MB Hugo's"

median() { cut -d' ' -f"$2" "$work/$1.txt" | sort -n | awk '{ all[NR] = $1 } END { print all[int((NR + 1) / 2)] }'; }
most() { cut -d' ' -f2 "$work/$1.txt" | sort -n | tail -n 1 | awk '{ printf "%.0f", $1 / 1024 }'; }
for run in '' -again; do
  o="$(median "ours$run" 1)" h="$(median "hugo$run" 1)"
  awk -v o="$o" -v h="$h" -v om="$(most "ours$run")" -v hm="$(most "hugo$run")" -v what="${run:+ after one edited page}" \
    'BEGIN { printf "compile%s: %.3f s, %d MB; Hugo %.2f s, %d MB; ratio %.3f\n", what, o, om, h, hm, o / h }'
done
printf 'Hugo with a bare theme: %s s, %s MB\n' "$(median bare 1)" "$(most bare)"
