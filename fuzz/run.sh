#!/usr/bin/env bash
# Builds the fuzz targets with clang, writes the seeds and fuzzes for the given time.
#   fuzz/run.sh [SECONDS] [TARGET]
# SECONDS defaults to 60. TARGET is parse (the parser alone, from memory) or convert (the
# whole conversion); without it both run, one after the other, sharing the time.
# Seeds: our own databases, and every .flt file under ../shared/data when that folder is
# there. The corpora grow in build-fuzz/corpus-parse/ and build-fuzz/corpus/; findings land
# in build-fuzz/findings/ (parse-crash-..., convert-crash-...) and make the script fail.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
target=${2:-both}
usage="usage: fuzz/run.sh [SECONDS] [parse|convert]"
[[ "$seconds" =~ ^[0-9]+$ && "$seconds" -gt 0 ]] || { echo "$usage" >&2; exit 2; }
case "$target" in
  parse) targets=(parse) ;;
  convert) targets=(convert) ;;
  both) targets=(parse convert) ;;
  *) echo "$usage" >&2; exit 2 ;;
esac

scripts/setup-packages.sh clang libclang-rt-14-dev cmake make libcoin-dev libtinygltf-dev nlohmann-json3-dev
cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
  -DQETZFLT_FUZZ=ON -DQETZFLT_BUILD_TESTS=OFF
build_targets=(qetzflt-fuzz-corpus)
for t in "${targets[@]}"; do
  if [ "$t" = parse ]; then build_targets+=(qetzflt-fuzz-parse); else build_targets+=(qetzflt-fuzz); fi
done
cmake --build build-fuzz -j "$(nproc)" --target "${build_targets[@]}"

build-fuzz/qetzflt-fuzz-corpus build-fuzz/seeds > /dev/null
# The real databases, under names that keep their place in the tree apart.
real=build-fuzz/seeds-real
rm -rf "$real"
mkdir -p "$real" build-fuzz/corpus build-fuzz/corpus-parse build-fuzz/findings
if [ -d ../shared/data ]; then
  count=0
  while IFS= read -r -d '' file; do
    name=${file#../shared/data/}
    cp "$file" "$real/${name//\//__}"
    count=$((count + 1))
  done < <(find -L ../shared/data -type f -iname '*.flt' -print0)
  if [ "$count" -gt 0 ]; then
    echo "Seeding from our own databases and the $count .flt files under ../shared/data"
  else
    echo "../shared/data holds no .flt file: seeding from our own databases only"
  fi
else
  echo "../shared/data is absent: seeding from our own databases only"
fi

# Leaks: the parser's are checked after inputs that allocate more than they free; the
# conversion's are left to the sanitizer build of the tests, since Coin's process-wide
# state would be reported at every exit. Inputs longer than 64 KiB, the larger real
# databases among them, are cut to their first 64 KiB: taking them whole (up to 350 KiB)
# made the parser target slower and reach fewer features in the same time. Faster inputs
# get more of the mutations (-entropic_scale_per_exec_time): in trials of three minutes
# that nearly doubled both rates and covered as many edges.
run() {
  local name=$1 time=$2 binary corpus leaks
  if [ "$name" = parse ]; then
    binary=build-fuzz/qetzflt-fuzz-parse corpus=build-fuzz/corpus-parse leaks=1
  else
    binary=build-fuzz/qetzflt-fuzz corpus=build-fuzz/corpus leaks=0
  fi
  local log=build-fuzz/last-run-$name.log
  echo "== $name: fuzzing for $time s (log: $log)"
  local code=0
  ASAN_OPTIONS=detect_leaks=$leaks UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
    "$binary" "$corpus" build-fuzz/seeds "$real" \
    -max_total_time="$time" -max_len=65536 -entropic_scale_per_exec_time=1 -timeout=10 -rss_limit_mb=2048 \
    -detect_leaks="$leaks" \
    -artifact_prefix="build-fuzz/findings/$name-" -print_final_stats=1 > "$log" 2>&1 || code=$?
  # The last progress line (coverage, features, corpus) and the final figures.
  grep -E '^#[0-9]+' "$log" | tail -n 1 || true
  grep -E '^stat::|ERROR|SUMMARY|artifact|INFO: libFuzzer disabled' "$log" || true
  if [ "$code" -ne 0 ]; then
    echo "== $name: FAILED (exit $code): see $log and build-fuzz/findings/"
    status=1
  fi
}

status=0
share=$((seconds / ${#targets[@]}))
for i in "${!targets[@]}"; do
  time=$share
  [ "$i" -eq $((${#targets[@]} - 1)) ] && time=$((seconds - share * i))
  [ "$time" -gt 0 ] || time=1
  run "${targets[$i]}" "$time"
done
exit "$status"
