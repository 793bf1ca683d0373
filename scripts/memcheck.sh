#!/usr/bin/env bash
# Runs the test suite and a conversion of every database in ../shared/data under Valgrind's
# memcheck: any invalid access, use of uninitialised memory or leak of our own fails it.
# Leaks inside Coin's process-wide state (SoDB::init) are suppressed by tests/valgrind.supp.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-packages.sh valgrind cmake make g++ pkg-config libcoin-dev libtinygltf-dev nlohmann-json3-dev libgtest-dev libpng-dev libx11-dev \
  libgl-dev libglx-dev libsimage-dev xvfb libgl1-mesa-dri
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j "$(nproc)"

memcheck=(valgrind --tool=memcheck --error-exitcode=99 --leak-check=full --errors-for-leak-kinds=definite
          --show-leak-kinds=definite --suppressions=tests/valgrind.supp --quiet)

echo "== test suite under memcheck (the render tests, which drive an X server, are left out)"
"${memcheck[@]}" build/tests/qetzflt_tests --gtest_filter='-ToolRender*' --gtest_brief=1

data=../shared/data
if [ -d "$data" ]; then
  scratch=$(mktemp -d)
  trap 'rm -rf "$scratch"' EXIT
  cp -r "$data"/. "$scratch"/
  chmod -R u+w "$scratch"
  echo "== every database of $data under memcheck"
  find "$scratch" -name '*.flt' | sort | while read -r db; do
    echo "-- ${db#$scratch/}"
    QETZFLT_LIBRARY=build/libQetzFlt.so "${memcheck[@]}" build/qetzflt convert "$db" -o "$scratch/out.iv" > /dev/null
  done
else
  echo "== $data is absent: the real databases are not checked"
fi
echo "memcheck: clean"
