#!/usr/bin/env bash
# From process start to the painted, idle main window, with the peak memory: Vorel, CherryTree (Debian's package) and an
# empty window of the same toolkit in turn, under one virtual display. Prints medians and ratios.
#   bench/start.sh [ROUNDS [warm|cold|shared]]     build the preset "release" first; root for "cold"
# cold: nothing of the disk is in memory at each start, for all three. shared: all starts on one display, where the
# later ones find what the earlier ones left.
set -euo pipefail
cd "$(dirname "$0")/.."
me="$PWD/bench/start.sh"
build="$PWD/build/release"

# A display that forgets nothing when its last window goes.
with_display() { xvfb-run -a -s "-screen 0 1280x900x24 -noreset" "$@"; }
one_start() { # PROGRAM
  [ "$kind" != cold ] || { sync; echo 3 >/proc/sys/vm/drop_caches; }
  "$work/winprobe" -t 60 -- "$1" || true
}
all_starts() {
  local round side program out
  for round in $(seq 0 "$rounds"); do
    for side in vorel cherrytree empty; do
      case $side in
        vorel) program="$work/Vorel/Vorel" ;;
        cherrytree) program=cherrytree ;;
        empty) program="$build/bin/bench_empty_window" ;;
      esac
      # The first round only warms the caches.
      [ "$round" -eq 0 ] && out=/dev/null || out="$work/$side.json"
      # What an earlier program left on a display (a cache of its visuals, say) makes the next one look cheaper than a
      # person's first start.
      if [ "$kind" = shared ]; then one_start "$program"; else with_display "$me" one_start "$program"; fi >>"$out"
    done
  done
}
# The display's script starts this one again, for a part of it.
case "${1:-}" in one_start | all_starts) "$@"; exit ;; esac

rounds="${1:-7}"
kind="${2:-warm}"
work="$(mktemp -d)"
export work kind rounds
. tests/journey/stage.sh
trap 'stop_server; rm -rf "$work"' EXIT
lay_out "$build" "$work"
start_server
scripts/write-appinfo.sh "$stage" "$address"
cc -O2 -o "$work/winprobe" bench/winprobe.c -lX11

export HOME="$work/home" XDG_RUNTIME_DIR="$work/run"
mkdir -p "$HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
if [ "$kind" = shared ]; then with_display "$me" all_starts; else all_starts; fi

median() { # FILE KEY
  grep -o "\"$2\":[0-9.]*" "$work/$1.json" | cut -d: -f2 | sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'
}
for side in vorel cherrytree empty; do
  printf '%-11s %s: idle %ss, peak memory %s KB, proportional memory of all processes %s KB (%s rounds)\n' "$side" "$kind" \
    "$(median $side idle)" "$(median $side main_hwm_kb)" "$(median $side sum_pss_kb)" "$(wc -l <"$work/$side.json")"
done
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'; }
echo "ratio start-time $kind: $(ratio "$(median vorel idle)" "$(median cherrytree idle)") (limit 0.35)"
echo "ratio start-memory $kind: $(ratio "$(median vorel main_hwm_kb)" "$(median cherrytree main_hwm_kb)") (limit 0.6)"
