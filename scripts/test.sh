#!/usr/bin/env bash
# Installs, builds and runs every test: the whole program's tests, the same again under the it_IT.UTF-8
# locale, then the engine's tests again under AddressSanitizer and UndefinedBehaviorSanitizer.
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
