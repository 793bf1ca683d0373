#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite twice: a normal build and
# an AddressSanitizer + UndefinedBehaviorSanitizer build; then the suite and the real
# databases under Valgrind's memcheck, the threaded tests under ThreadSanitizer, and the
# two fuzz targets for one minute between them.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-packages.sh cmake make g++ pkg-config libcoin-dev libtinygltf-dev nlohmann-json3-dev libgtest-dev libpng-dev libx11-dev libgl-dev libglx-dev \
  libsimage-dev xvfb libgl1-mesa-dri libsoqt520-dev qtbase5-dev python3-pivy
jobs=$(nproc)

cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j "$jobs"
scripts/setup-gltf-validator.sh build
(cd build && ctest --output-on-failure -j "$jobs")

cmake -S . -B build-sanitize -DCMAKE_BUILD_TYPE=Debug -DQETZFLT_SANITIZE=ON
cmake --build build-sanitize -j "$jobs"
(cd build-sanitize && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
   ctest --output-on-failure -j "$jobs")
scripts/memcheck.sh
scripts/tsan.sh
fuzz/run.sh 60
echo "All tests passed (normal, sanitizer, memcheck and thread-sanitizer runs; one minute of fuzzing found nothing)."
