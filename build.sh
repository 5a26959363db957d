#!/bin/sh
# Quick start.
#   ./build.sh example   configure, build the library and run the road example
#   ./build.sh test      configure, build and run the whole test suite
#   ./build.sh sanitize  the same tests built with AddressSanitizer and UBSan
#   ./build.sh bench     build the benchmarks in Release and run them
set -eu
cd "$(dirname "$0")"
jobs=$(nproc 2>/dev/null || echo 2)
case "${1:-}" in
example)
    cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release
    cmake --build build/release -j "$jobs"
    ./build/release/examples/road_example
    ;;
test)
    cmake -S . -B build/test -DTESSAR_BUILD_TESTS=ON -DTESSAR_BUILD_BENCHMARKS=ON -DTESSAR_WARNINGS_AS_ERRORS=ON
    cmake --build build/test -j "$jobs"
    ctest --test-dir build/test --output-on-failure -j "$jobs"
    ;;
sanitize)
    cmake -S . -B build/sanitize -DTESSAR_BUILD_TESTS=ON -DTESSAR_WARNINGS_AS_ERRORS=ON \
        -DTESSAR_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug
    cmake --build build/sanitize -j "$jobs"
    ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
        ctest --test-dir build/sanitize --output-on-failure -j "$jobs"
    ;;
bench)
    cmake -S . -B build/bench -DCMAKE_BUILD_TYPE=Release -DTESSAR_BUILD_BENCHMARKS=ON
    cmake --build build/bench -j "$jobs"
    for b in build/bench/bench/bench_*; do "$b"; done
    ;;
*)
    echo "usage: $0 example|test|sanitize|bench" >&2
    exit 2
    ;;
esac
