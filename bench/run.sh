#!/usr/bin/env bash
# Every benchmark, each against its peer in the same run, with the ratio printed. What writes thousands of files works in a
# folder on a memory file system, both sides alike; what waits for the disk works in the build folder.
#   bench/run.sh [FOLDER]      default: /dev/shm
set -euo pipefail
cd "$(dirname "$0")/.."
place="$(mktemp -d "${1:-/dev/shm}/vorel-bench-XXXXXX")"
mkdir -p build
disk="$(mktemp -d "$PWD/build/vorel-bench-XXXXXX")"
trap 'rm -rf "$place" "$disk"' EXIT
cmake --preset release >/dev/null
cmake --build build/release --target portable bench_ciphers bench_files bench_resource_text bench_store bench_subtree bench_import bench_tree_ops bench_empty_window \
  bench_make_courses bench_make_texts bench_names_tree VorelCompiler voreljourney vorelstalls vorel-site-check >/dev/null
for bench in ciphers store files subtree import resource_text; do
  echo "== $bench"
  build/release/bin/bench_$bench "$place"
done
echo "== tree_ops"
build/release/bin/bench_tree_ops "$disk"
echo "== start"
bench/start.sh
echo "== open"
bench/open.sh 5 "${1:-/dev/shm}"
echo "== compile"
bench/compile.sh 5 "${1:-/dev/shm}"
echo "== stalls"
bench/stalls.sh 1
