#!/usr/bin/env bash
# Installs every Debian package that building and running Pelwright needs;
# with --tests also the programs the tests read exported files back with.
# Idempotent: packages already present are skipped, and the package index is
# refreshed only when something is missing.
set -euo pipefail

PACKAGES=(
  # toolchain
  build-essential cmake ninja-build pkg-config ccache git
  # Qt 6 widgets, printing, PDF pages, SVG, OpenGL viewport
  qt6-base-dev qt6-base-dev-tools qt6-pdf-dev qt6-svg-dev libqt6opengl6-dev libqt6svg6
  qt6-qpa-plugins libgl-dev libglu1-mesa-dev
  fontconfig fonts-dejavu-core
  # Japanese menus and text shapes
  fonts-ipafont-gothic
  # Simplified Chinese (DejaVu above covers Cyrillic, Armenian and Latin)
  fonts-wqy-microhei
  # libraries of the model and the file formats
  nlohmann-json3-dev libpugixml-dev libzip-dev zlib1g-dev libpcre2-dev
  libpolyclipping-dev libcpp-httplib-dev libssl-dev
  # tests and benchmarks
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  # the mesh checker that reads exported solids back as slicers do
  admesh
  # PDF pages rendered to pixels, to measure printed lengths in the tests
  poppler-utils
  # a virtual display for screenshots of the real window
  xvfb xauth
  # the README's examples talk to the local API with curl
  curl
)

if [ "${1:-}" = "--tests" ]; then
  PACKAGES+=(
    # exported files read back as users read them: SVG by Inkscape, DXF by
    # ezdxf's auditor (/usr/bin/python3)
    inkscape python3-ezdxf
  )
fi

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "setup: installing ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null 2>&1; then
    echo "setup: these Debian packages are missing: ${missing[*]}" >&2
    echo "setup: installing them needs root, and sudo is not installed." >&2
    echo "setup: run this script as root once (su -c ./scripts/setup.sh)," >&2
    echo "setup: or ask your administrator to install the packages above." >&2
    exit 1
  fi
  SUDO="sudo"
fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
$SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
