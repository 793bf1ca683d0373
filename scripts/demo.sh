#!/usr/bin/env bash
# Installs what is missing, builds the library and its programs (not the tests), generates
# the bundled example database (if missing), converts it to an Inventor file, prints what it
# holds and renders it to a PNG picture.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-packages.sh cmake make g++ pkg-config libcoin-dev libtinygltf-dev nlohmann-json3-dev libgtest-dev libpng-dev libx11-dev libgl-dev libglx-dev \
  libsimage-dev xvfb libgl1-mesa-dri libsoqt520-dev qtbase5-dev
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j "$(nproc)" --target qetzflt-programs
mkdir -p build/example
[ -f build/example/demo.flt ] || build/qetzflt-demo build/example/demo.flt
build/qetzflt convert build/example/demo.flt -o build/example/demo.iv
build/qetzflt info build/example/demo.flt
build/qetzflt render build/example/demo.flt -o build/example/demo.png --size 640x480
echo "Look at it in the viewer: build/qetzflt view build/example/demo.flt"
