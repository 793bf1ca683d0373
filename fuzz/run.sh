#!/usr/bin/env bash
# Builds the fuzz target with clang, writes the seed corpus and fuzzes for the given time.
#   fuzz/run.sh [SECONDS]   (default 60)
# Findings land in build-fuzz/findings/; the corpus grows in build-fuzz/corpus/.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
scripts/setup-packages.sh clang libclang-rt-14-dev cmake make libcoin-dev
cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
  -DQETZFLT_FUZZ=ON -DQETZFLT_BUILD_TESTS=OFF
cmake --build build-fuzz -j "$(nproc)" --target qetzflt-fuzz qetzflt-fuzz-corpus
mkdir -p build-fuzz/corpus build-fuzz/findings
build-fuzz/qetzflt-fuzz-corpus build-fuzz/seeds > /dev/null
# Leaks are checked by the sanitizer build of the tests; Coin's process-wide state would
# otherwise be reported at every exit.
log=build-fuzz/last-run.log
status=0
ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
  build-fuzz/qetzflt-fuzz build-fuzz/corpus build-fuzz/seeds \
  -max_total_time="$seconds" -max_len=65536 -timeout=10 -rss_limit_mb=2048 \
  -artifact_prefix=build-fuzz/findings/ -print_final_stats=1 > "$log" 2>&1 || status=$?
# The last progress line (coverage, features, corpus) and the final figures.
grep -E '^#[0-9]+' "$log" | tail -n 1
grep -E '^stat::|ERROR|SUMMARY|artifact' "$log" || true
exit "$status"
