#!/usr/bin/env bash
# Times whole qetzflt commands on the largest bench database: the conversion written as
# binary Inventor, and the same database written as glTF (.glb), interleaved, RUNS times
# each (default 5); prints the medians and the ratio of glTF to binary Inventor.
#   bench/gltf.sh [RUNS]
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-5}
scripts/setup-packages.sh cmake make g++ pkg-config libcoin-dev libtinygltf-dev nlohmann-json3-dev libpng-dev libx11-dev \
  libgl-dev libglx-dev libsimage-dev
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
cmake --build build -j "$(nproc)" --target qetzflt QetzFlt qetzflt-bench-generate > /dev/null
db=build/bench-data/terrain-100.flt
mkdir -p build/bench-data
[ -f "$db" ] || build/qetzflt-bench-generate "$db" 100
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

seconds() {
  local start end
  start=$(date +%s.%N)
  "$@" > /dev/null
  end=$(date +%s.%N)
  awk -v s="$start" -v e="$end" 'BEGIN { print e - s }'
}
median() { sort -g | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

iv=() glb=()
for ((r = 0; r < runs; r++)); do
  iv+=("$(seconds build/qetzflt convert "$db" -o "$out/terrain.iv" --binary --no-log)")
  glb+=("$(seconds build/qetzflt convert "$db" -o "$out/terrain.glb" --no-log)")
done
iv_median=$(printf '%s\n' "${iv[@]}" | median)
glb_median=$(printf '%s\n' "${glb[@]}" | median)
size() { awk -v b="$(stat -c %s "$1")" 'BEGIN { printf "%.1f", b / 1048576 }'; }
printf '%-34s %10s %10s\n' "terrain-100.flt ($(size "$db") MiB)" "median s" "out MiB"
printf '%-34s %10.2f %10s\n' "qetzflt convert -o .iv --binary" "$iv_median" "$(size "$out/terrain.iv")"
printf '%-34s %10.2f %10s\n' "qetzflt convert -o .glb" "$glb_median" "$(size "$out/terrain.glb")"
awk -v g="$glb_median" -v i="$iv_median" 'BEGIN { printf "glTF over binary Inventor: %.2f\n", g / i }'
