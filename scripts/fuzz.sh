#!/usr/bin/env bash
# Builds the libFuzzer target of the project reader with clang (into
# build-fuzz/) and runs it. Arguments go to libFuzzer, for instance
#   ./scripts/fuzz.sh -max_total_time=600
# Crashing inputs land in fuzz/crashes/; keep them as regression tests.
set -euo pipefail
cd "$(dirname "$0")/.."
if ! command -v clang++ >/dev/null; then
  echo "fuzz: clang++ is not installed; nothing to do" >&2
  exit 0
fi
if [ ! -f build-fuzz/build.ninja ]; then
  CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DPELWRIGHT_FUZZ=ON -DPELWRIGHT_BUILD_TESTS=OFF -DPELWRIGHT_BUILD_BENCH=OFF
fi
cmake --build build-fuzz -j2 --target project_reader_fuzz
mkdir -p fuzz/crashes build-fuzz/corpus
cp -n fuzz/corpus/project/* build-fuzz/corpus/ 2>/dev/null || true
exec ./build-fuzz/fuzz/project_reader_fuzz -artifact_prefix=fuzz/crashes/ -max_len=65536 -timeout=10 \
  -rss_limit_mb=4096 "$@" build-fuzz/corpus
