#!/usr/bin/env bash
# Installs what is missing, builds, generates the bundled example database and converts it
# to an Inventor file with the qetzflt tool.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-packages.sh cmake make g++ pkg-config libcoin-dev libgtest-dev
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j "$(nproc)"
mkdir -p build/example
[ -f build/example/demo.flt ] || build/qetzflt-demo build/example/demo.flt
build/qetzflt convert build/example/demo.flt -o build/example/demo.iv
