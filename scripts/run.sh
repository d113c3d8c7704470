#!/usr/bin/env bash
# Installs what is missing, builds, and starts Pelwright. Arguments go to the
# program: ./scripts/run.sh --headless, ./scripts/run.sh project.pwc
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/build.sh
exec ./build/pelwright "$@"
