#!/usr/bin/env bash
# Times a whole batch, `qetzflt convert FOLDER -o DIR`, on the public databases of
# ../shared/data/public with --jobs 1 and --jobs 2, interleaved, RUNS times each (default 5);
# prints the medians and the ratio of two workers to one.
#   bench/batch.sh [RUNS]        (BUILD=dir names the build folder, default build)
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-5}
build=${BUILD:-build}
data=${QETZFLT_SHARED_DATA:-../shared/data}/public
if [ ! -d "$data" ]; then
  echo "bench/batch.sh: $data is absent: nothing to time"
  exit 0
fi
scripts/setup-packages.sh cmake make g++ pkg-config libcoin-dev libtinygltf-dev nlohmann-json3-dev libpng-dev libx11-dev \
  libgl-dev libglx-dev libsimage-dev
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
cmake --build "$build" -j "$(nproc)" --target qetzflt QetzFlt > /dev/null
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

seconds() {
  local start end
  start=$(date +%s.%N)
  "$@" > /dev/null 2>&1 || true  # some databases carry errors; the batch still writes them all
  end=$(date +%s.%N)
  awk -v s="$start" -v e="$end" 'BEGIN { print e - s }'
}
median() { sort -g | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

count=$("$build/qetzflt" convert "$data" -o "$out/check" | grep -c '^ok ' || true)
one=() two=()
for ((r = 0; r < runs; r++)); do
  rm -rf "$out/1" "$out/2"
  one+=("$(seconds "$build/qetzflt" convert "$data" -o "$out/1" --jobs 1)")
  two+=("$(seconds "$build/qetzflt" convert "$data" -o "$out/2" --jobs 2)")
done
one_median=$(printf '%s\n' "${one[@]}" | median)
two_median=$(printf '%s\n' "${two[@]}" | median)
printf '%-40s %10s\n' "$count databases of $data" "median s"
printf '%-40s %10.2f\n' "qetzflt convert FOLDER -o DIR --jobs 1" "$one_median"
printf '%-40s %10.2f\n' "qetzflt convert FOLDER -o DIR --jobs 2" "$two_median"
awk -v a="$two_median" -v b="$one_median" 'BEGIN { printf "--jobs 2 over --jobs 1: %.2f (on %d cores)\n", a / b, '"$(nproc)"' }'
