#!/usr/bin/env bash
# Runs every fuzz target with clang's coverage-guided fuzzer for so many seconds each (default 60).
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
cmake --preset fuzz >/dev/null
cmake --build build/fuzz >/dev/null
for target in build/fuzz/bin/*fuzz_*; do
  name="$(basename "$target")"
  mkdir -p "build/fuzz/corpus/$name"
  echo "== $name"
  "$target" -max_total_time="$seconds" -max_len=65536 -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    "build/fuzz/corpus/$name" $(ls -d "tests/fuzz/seeds/$name" 2>/dev/null) 2>&1 |
    grep -E 'stat::number_of_executed_units|ERROR|SUMMARY' || true
done
