#!/usr/bin/env bash
# Fails on a file that clang-format would change. With --fix it changes it.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=(--dry-run --Werror)
[ "${1:-}" = "--fix" ] && mode=(-i)
git ls-files -co --exclude-standard -- '*.h' '*.cpp' | xargs -r -d '\n' clang-format "${mode[@]}"
echo "format: as .clang-format says"
