#!/usr/bin/env bash
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer and runs the whole suite:
# unit, integration (real ngircd and the game-server simulator on 127.0.0.1) and GUI tests, a short
# fuzzing pass with clang, and the benchmarks in their short mode. CTest's summary comes last.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
jobs=$(nproc)

if command -v clang++ >/dev/null; then
    CXX=clang++ cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTALLYBOT_FUZZ=ON \
        -DTALLYBOT_TESTS=OFF -DTALLYBOT_BENCH=OFF >/dev/null
    fuzz_targets=$(for f in fuzz/*_fuzz.cpp; do basename "$f" .cpp; done)
    # shellcheck disable=SC2086
    cmake --build build/fuzz -j "$jobs" --target $fuzz_targets
    scripts/fuzz.sh build/fuzz/fuzz "${TALLYBOT_FUZZ_SECONDS:-10}"
fi

cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DTALLYBOT_TESTS=OFF >/dev/null
cmake --build build/release -j "$jobs"
if [ -x bench/run.sh ]; then bench/run.sh --short build/release; fi

cmake -S . -B build/asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTALLYBOT_SANITIZE=ON -DTALLYBOT_WERROR=ON >/dev/null
cmake --build build/asan -j "$jobs"
export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1
cd build/asan && ctest --output-on-failure -j "$jobs" --timeout 300
