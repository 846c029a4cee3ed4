#!/usr/bin/env bash
# Installs, builds and runs every test: the whole program's tests, the same again under the it_IT.UTF-8
# locale, then the engine's tests again under AddressSanitizer and UndefinedBehaviorSanitizer, then the
# engine's fuzz targets.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
jobs=$(nproc)

cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j "$jobs"
ctest --test-dir build --output-on-failure -j "$jobs"
# Once more under an Italian environment: nothing may read the C library's locale for numbers.
LANG=it_IT.UTF-8 LC_ALL=it_IT.UTF-8 ctest --test-dir build --output-on-failure -j "$jobs"

cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DBREVANO_SANITIZE=ON -DBREVANO_ENGINE_ONLY=ON
cmake --build build-asan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --test-dir build-asan --output-on-failure -j "$jobs"

# The fuzz targets under the sanitizers (clang), a fixed number of runs from the kept corpus, about
# three minutes on two cores: the engine's objects, statements run on a scratch archive (60,000 runs,
# about two minutes), and the translator alone (400,000 runs, about half a minute). An input that
# crashes, hangs or leaks fails the run; it is left in build-fuzz/findings/ and belongs in
# fuzz/corpus/<target>/ once fixed.
CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBREVANO_FUZZ=ON \
  -DBREVANO_SANITIZE=ON -DBREVANO_ENGINE_ONLY=ON -DBREVANO_BENCH=OFF
cmake --build build-fuzz -j "$jobs" --target engine_fuzz translator_fuzz
mkdir -p build-fuzz/findings
fuzz_runs() {  # target runs corpus...
  local target=$1 runs=$2 scratch
  shift 2
  scratch=$(mktemp -d)
  build-fuzz/bin/"$target"_fuzz -runs="$runs" -seed=1 -timeout=10 -rss_limit_mb=2048 -dict=fuzz/engine.dict \
    -print_final_stats=1 -artifact_prefix=build-fuzz/findings/"$target"- "$scratch" "$@"
  rm -rf "$scratch"
}
fuzz_runs engine 60000 fuzz/corpus/engine fuzz/corpus/translator
fuzz_runs translator 400000 fuzz/corpus/translator
