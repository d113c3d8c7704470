#!/usr/bin/env bash
# Builds a libFuzzer target with clang (into build-fuzz/) and runs it:
#   ./scripts/fuzz.sh [project|svg] [libFuzzer arguments]
# "project" (the default) fuzzes the project reader, "svg" the SVG importer;
# for instance ./scripts/fuzz.sh svg -max_total_time=600
# Crashing inputs land in fuzz/crashes/; keep them as regression tests.
set -euo pipefail
cd "$(dirname "$0")/.."
kind=project
if [ "${1:-}" = "project" ] || [ "${1:-}" = "svg" ]; then
  kind=$1
  shift
fi
target=project_reader_fuzz
[ "$kind" = "svg" ] && target=svg_import_fuzz
if ! command -v clang++ >/dev/null; then
  echo "fuzz: clang++ is not installed; nothing to do" >&2
  exit 0
fi
if [ ! -f build-fuzz/build.ninja ]; then
  CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DPELWRIGHT_FUZZ=ON -DPELWRIGHT_BUILD_TESTS=OFF -DPELWRIGHT_BUILD_BENCH=OFF
fi
cmake --build build-fuzz -j2 --target "$target"
mkdir -p fuzz/crashes "build-fuzz/corpus-$kind"
cp -n "fuzz/corpus/$kind"/* "build-fuzz/corpus-$kind/" 2>/dev/null || true
exec "./build-fuzz/fuzz/$target" -artifact_prefix=fuzz/crashes/ -max_len=65536 -timeout=10 \
  -rss_limit_mb=4096 "$@" "build-fuzz/corpus-$kind"
