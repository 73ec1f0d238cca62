#!/usr/bin/env bash
# Builds and runs every test, windows under virtual displays, and ends with the counts.
#   ./test.sh              the preset "dev"
#   ./test.sh asan|core    another preset of CMakePresets.json
#   ./test.sh PRESET ...   more words for ctest, such as "-R editor"
set -euo pipefail
cd "$(dirname "$0")"
preset="${1:-dev}"
[ $# -eq 0 ] || shift
scripts/setup.sh test

build="build/$preset"
log="$(mktemp)"
trap 'rm -f "$log"' EXIT
cmake --preset "$preset" >"$log" 2>&1 || { cat "$log"; exit 1; }
cmake --build "$build" >"$log" 2>&1 || { grep -E 'error|FAILED|undefined' -A4 "$log" | head -n 80; exit 1; }
grep -E 'warning:' "$log" | sort -u | head -n 40 || true

results="$PWD/$build/results"
rm -rf "$results"
mkdir -p "$results"
export GTEST_OUTPUT="xml:$results/"
export QT_MEDIA_BACKEND=ffmpeg
# The browser engine's own sandbox refuses to work for root; only tests run as root.
[ "$(id -u)" -eq 0 ] && export QTWEBENGINE_DISABLE_SANDBOX=1
# No strict_string_checks: the X keyboard library copies names that end without a zero, which is within its rights.
export ASAN_OPTIONS="detect_stack_use_after_return=0:${ASAN_OPTIONS:-}"
export LSAN_OPTIONS="suppressions=$PWD/tests/support/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1"

run=(ctest --test-dir "$build" --output-on-failure --no-tests=error -j2 --output-log "$results/ctest.log" "$@")
"${run[@]}" && status=0 || status=$?

# Every GoogleTest program leaves its counts; other programs count as one test each.
awk '
  /<testsuites / {
    match($0, /tests="[0-9]+"/);    tests += substr($0, RSTART + 7, RLENGTH - 8)
    match($0, /failures="[0-9]+"/); failures += substr($0, RSTART + 10, RLENGTH - 11)
    programs++
  }
  / Test +#[0-9]+: .*(Passed|\*\*\*)/ { run++; if ($0 ~ /\*\*\*/) broken++ }
  END {
    others = run - programs
    if (others > 0) tests += others
    # A program that died left no counts: its failure shows here alone.
    if (broken > 0 && failures < broken) failures = broken
    printf "%d passed, %d failed\n", tests - failures, failures
    exit failures > 0
  }
' $(find "$results" -name '*.xml') "$results/ctest.log" || status=1
exit "$status"
