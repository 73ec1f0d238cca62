#!/usr/bin/env bash
# clang-tidy over the logic (or the files named), with the settings of .clang-tidy.
set -euo pipefail
cd "$(dirname "$0")/.."
[ -f build/core/compile_commands.json ] || cmake --preset core >/dev/null
if [ $# -gt 0 ]; then files=("$@"); else mapfile -t files < <(git ls-files 'platform/base/*.cpp' 'foundation/*.cpp' \
  'course/*.cpp' 'server/*.cpp' 'content/*.cpp' 'editor/*.cpp' 'app/*.cpp' 'companions/*.cpp' 'courseserver/*.cpp' |
  grep -v /ui/); fi
printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/core --quiet
