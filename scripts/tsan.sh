#!/usr/bin/env bash
# Builds the library and the tests with ThreadSanitizer and runs the tests that convert
# from several threads at once.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-packages.sh cmake make g++ libcoin-dev libtinygltf-dev nlohmann-json3-dev libgtest-dev libpng-dev
cmake -S . -B build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQETZFLT_TSAN=ON > /dev/null
cmake --build build-tsan -j "$(nproc)" --target qetzflt_tests
TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" \
  build-tsan/tests/qetzflt_tests --gtest_filter='HostileHost.*Thread*' --gtest_brief=1
echo "tsan: clean"
