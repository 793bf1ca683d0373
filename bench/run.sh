#!/usr/bin/env bash
# Builds the library and the benchmark, writes the terrain databases of about 0.05, 1, 10
# and 100 MiB and the culture databases of 10 000 and 40 000 one-face objects (once), and
# prints the tables of conversion times against the floor, of the objects' loads and
# releases, and the small database's cost above its floor.
#   bench/run.sh [RUNS]   (default 7 runs per measurement; medians are shown)
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-7}
scripts/setup-packages.sh cmake make g++ pkg-config libcoin-dev libtinygltf-dev nlohmann-json3-dev libgtest-dev libpng-dev libx11-dev libgl-dev \
  libglx-dev libsimage-dev xvfb libgl1-mesa-dri
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
cmake --build build -j "$(nproc)" --target qetzflt-bench qetzflt-bench-generate > /dev/null
mkdir -p build/bench-data
for size in 0.05 1 10 100; do
  db=build/bench-data/terrain-$size.flt
  [ -f "$db" ] || build/qetzflt-bench-generate "$db" "$size"
done
for count in 10000 40000; do
  db=build/bench-data/objects-$count.flt
  [ -f "$db" ] || build/qetzflt-bench-generate --objects "$count" "$db"
done
build/qetzflt-bench --runs "$runs" build/bench-data/terrain-1.flt build/bench-data/terrain-10.flt \
  build/bench-data/terrain-100.flt --objects build/bench-data/objects-10000.flt \
  --objects build/bench-data/objects-40000.flt --small build/bench-data/terrain-0.05.flt 2> /dev/null
