#!/usr/bin/env bash
# Has others judge compiled sites: the Nu HTML checker, axe (in Chromium, on a wide and a narrow window) and linkinator.
#   scripts/check-site.sh FOLDER [FOLDER_FOR_THE_OUTPUTS [FOLDER_OF_THE_COURSE]]
# FOLDER is the output folder of a course, whose forms are all judged, or one of them. NODE_PATH names the node_modules in
# which vnu-jar, axe-core, puppeteer-core and linkinator lie; what is missing is left out, and said. Fails (1) when a checker
# finds a fault in what the compiler writes itself, and when there is nothing to judge: faults of the markup inside pages
# of the course and of imported sites are counted and are their authors'. With the folder in which the course's N1, N2...
# lie, a file or a place that an author names and that the course has is the compiler's fault, too. Ends with 2 when none
# of the checkers is there. Places within pages are looked up in the compiled files, in the same way for each form.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$1" && pwd)"
out="${2:-$(mktemp -d)}"
mkdir -p "$out"
out="$(cd "$out" && pwd)"
export VOREL_COURSE="${3:-}"
[ -z "$VOREL_COURSE" ] || VOREL_COURSE="$(cd "$VOREL_COURSE" && pwd)"
rm -f "$out"/{places.txt,vnu.txt,axe.txt,linkinator.csv,linkinator.log}
sites=()
if [ -f "$root/.vorel-site" ]; then
  sites=("$(basename "$root")")
  root="$(dirname "$root")"
else
  for name in 课程网站 申报网站 合成/HTML 合成/Ondrel; do
    [ ! -f "$root/$name/.vorel-site" ] || sites+=("$name")
  done
fi
[ ${#sites[@]} -gt 0 ] || { echo "nothing was compiled into $root"; exit 1; }
browser="${CHROMIUM:-$(command -v chromium || command -v chromium-browser || true)}"
failed=0
CHROMIUM="$browser" node "$here/check-site.cjs" "$root" "$out" "${sites[@]}" || failed=1
linkinator="$(dirname "$(node -p "try { require.resolve('linkinator') } catch (e) { '' }" 2>/dev/null || true)")"
while [ "$linkinator" != / ] && [ "$linkinator" != . ] && [ ! -d "$linkinator/.bin" ]; do linkinator="$(dirname "$linkinator")"; done
if [ -x "$linkinator/.bin/linkinator" ]; then
  # From a page of its own that leads to all forms: it follows links from a folder whose name is plain ASCII alone.
  served="$(mktemp -d)"
  trap 'rm -rf "$served"' EXIT
  for name in "${sites[@]}"; do
    mkdir -p "$served/$(dirname "$name")"
    ln -s "$root/$name" "$served/$name"
    echo "<a href=\"$name/index.html\">$name</a>" >>"$served/index.html"
  done
  # The net's addresses are not ours to check. A machine that is busy answers late.
  (cd "$served" && "$linkinator/.bin/linkinator" . --recurse \
    --concurrency 4 --timeout 900000 --retry-errors --retry-errors-count 3 --format CSV \
    --skip '^https?://(?!localhost)' --skip '^(mailto|ftp|mms|mmst|rtsp|rtmp|tel|javascript):') \
    >"$out/linkinator.csv" 2>"$out/linkinator.log" || true
  # It ends with the same code for a dead link and for its own breakdown, after which nobody has looked at the rest.
  if grep -q '^Node\.js v' "$out/linkinator.log"; then
    echo "linkinator broke off: $(grep -m1 Error "$out/linkinator.log")"
    failed=1
  fi
  node "$here/check-site.cjs" "$root" "$out" --links "$out/linkinator.csv" || failed=1
else
  echo "linkinator: not there"
fi
if [ ! -f "$out/vnu.txt" ] && [ ! -f "$out/axe.txt" ] && [ ! -f "$out/linkinator.csv" ]; then
  echo "no checker is there"
  [ "$failed" -ne 0 ] || failed=2
fi
exit "$failed"
