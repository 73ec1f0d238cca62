#!/usr/bin/env bash
# Has others judge a compiled site: the Nu HTML checker, axe (in Chromium, on a wide and a narrow window) and linkinator.
#   scripts/check-site.sh SITE_FOLDER [FOLDER_FOR_THE_OUTPUTS]
# NODE_PATH names the node_modules in which vnu-jar, axe-core, puppeteer-core and linkinator lie; what is missing is left
# out, and said. Fails when a checker finds a fault in what the compiler writes itself: faults of the markup inside pages
# of the course and of imported sites are counted and are their authors'.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
site="$(cd "$1" && pwd)"
out="${2:-$(mktemp -d)}"
mkdir -p "$out"
browser="${CHROMIUM:-$(command -v chromium || command -v chromium-browser || true)}"
failed=0
CHROMIUM="$browser" node "$here/check-site.cjs" "$site" "$out" || failed=1
linkinator="$(dirname "$(node -p "try { require.resolve('linkinator') } catch (e) { '' }" 2>/dev/null || true)")"
while [ "$linkinator" != / ] && [ "$linkinator" != . ] && [ ! -d "$linkinator/.bin" ]; do linkinator="$(dirname "$linkinator")"; done
if [ -x "$linkinator/.bin/linkinator" ]; then
  # The net's addresses are not ours to check.
  (cd "$site" && "$linkinator/.bin/linkinator" . --recurse --check-fragments --concurrency 20 --format CSV --skip '^https?://(?!localhost)' --skip '^(mailto|ftp):') \
    >"$out/linkinator.csv" 2>"$out/linkinator.log" || true
  echo "linkinator: $(grep -c ',OK,' "$out/linkinator.csv" || true) links good," \
    "$(grep -c ',BROKEN,' "$out/linkinator.csv" || true) dead"
  ! grep ',BROKEN,' "$out/linkinator.csv" | head -20 | grep . || failed=1
else
  echo "linkinator: not there"
fi
exit "$failed"
