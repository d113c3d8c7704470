#!/usr/bin/env bash
# Installs what is missing, then configures and builds into build/.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
if [ ! -f build/build.ninja ]; then
  cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build build -j "$(nproc)"
