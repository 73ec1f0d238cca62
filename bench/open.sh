#!/usr/bin/env bash
# From process start to the idle window with a course open in it: courses of 10,000 and of 100,000 nodes in two shapes,
# beside CherryTree (Debian's package) opening documents of the same 10,000 nodes, and a bare tree that reads the names
# alone. All in turn, each on a fresh virtual display. Prints medians and ratios.
#   bench/open.sh [ROUNDS [PLACE]]     build the preset "release" with "portable", "bench_make_courses" and
#                                      "bench_names_tree" first; default: 5 rounds, /dev/shm
# PLACE holds the courses, with a folder for each of 220,000 nodes. The course server is the real one; that the person
# has proven the course's password to it less than five minutes ago is not part of the time.
# Pictures of what stood on the screen when each became idle: build/release/open.
set -euo pipefail
cd "$(dirname "$0")/.."
build="$PWD/build/release"

# The display's script starts this one again, inside.
if [ "${1:-}" = one_start ]; then
  shift
  "$work/winprobe" -t 120 -- "$@" || true
  exit
fi

rounds="${1:-5}"
work="$(mktemp -d "${2:-/dev/shm}/vorel-open-XXXXXX")"
export work
. tests/journey/stage.sh
trap 'stop_server; rm -rf "$work"' EXIT
lay_out "$build" "$work"
start_server
scripts/write-appinfo.sh "$stage" "$address"
export HOME="$work/home" XDG_RUNTIME_DIR="$work/run"
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME
mkdir -p "$HOME" "$XDG_RUNTIME_DIR" "$build/open"
chmod 700 "$XDG_RUNTIME_DIR"
cc -O2 -o "$work/winprobe" bench/winprobe.c -lX11

make="$build/bin/bench_make_courses"
id=0
for shape in book flat; do
  for nodes in 10000 100000; do
    id=$((id + 1))
    "$make" course "$stage" "$id" "$work/$shape-$nodes/course.vcp" "$shape" "$nodes"
    echo "$id" >"$work/$shape-$nodes.id"
  done
  "$make" document "$work/$shape-10000.ctb" "$shape" 10000
done
"$make" document "$work/book-100000.ctb" book 100000

# One start, added to the figures of its name.
start() { # NAME PROGRAM ARGUMENT
  local result="$work/$1.json"
  [ "$round" -gt 0 ] || result=/dev/null
  WINPROBE_SHOT="$build/open/$1.png" xvfb-run -a -s "-screen 0 1280x900x24 -noreset" \
    "$PWD/bench/open.sh" one_start "$2" "$3" >>"$result"
}
start_vorel() { # SHAPE-NODES
  scripts/write-appinfo.sh "$stage" "$address"
  "$make" password "$stage" "$(cat "$work/$1.id")" 123456
  start "vorel-$1" "$stage/Vorel" "$work/$1/course.vcp"
  # The last step of an opening.
  grep -aq "^Recent0=.*$1.course.vcp" "$stage/AppInfo.ini" || { echo "the course $1 did not open" >&2; exit 1; }
}
# The first round only warms the caches. Which size goes first changes, so that neither always follows the heavy one.
for round in $(seq 0 "$rounds"); do
  [ $((round % 2)) -eq 0 ] && sizes="10000 100000" || sizes="100000 10000"
  for shape in book flat; do
    for nodes in $sizes; do
      start_vorel "$shape-$nodes"
    done
    start "cherrytree-$shape-10000" cherrytree "$work/$shape-10000.ctb"
  done
  for nodes in 10000 100000; do
    start "names-book-$nodes" "$build/bin/bench_names_tree" "$work/book-$nodes.ctb"
  done
done

median() { # NAME [KEY]
  grep -o "\"${2:-idle}\":[0-9.]*" "$work/$1.json" | cut -d: -f2 | sort -n |
    awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'
}
for result in "$work"/*.json; do
  name="$(basename "$result" .json)"
  printf '%-22s idle %ss, peak memory %s KB (%s rounds)\n' "$name" "$(median "$name")" "$(median "$name" main_hwm_kb)" \
    "$(wc -l <"$result")"
done
ratio() { awk -v a="$(median "$1")" -v b="$(median "$2")" 'BEGIN { printf "%.3f", a / b }'; }
for shape in book flat; do
  echo "ratio open-10000 $shape: $(ratio "vorel-$shape-10000" "cherrytree-$shape-10000") (limit 0.06)"
  echo "ratio open-100000/open-10000 $shape: $(ratio "vorel-$shape-100000" "vorel-$shape-10000") (limit 1.2)"
done
