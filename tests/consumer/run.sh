#!/bin/sh
# Installs the built library into a fresh prefix, then builds and runs two
# programs outside the tree against the installed files only: a C11 program
# through pkg-config and a C++17 program through find_package(Tessar).
# Usage: run.sh BUILD_DIR CONSUMER_SOURCE_DIR WORK_DIR
set -eu
build=$1 src=$2 work=$3
flags=${CONSUMER_FLAGS:-}
rm -rf "$work"
mkdir -p "$work"
prefix="$work/prefix"
cmake --install "$build" --prefix "$prefix" >"$work/install.log"

libdir=$(find "$prefix" -name 'tessar.pc' -path '*pkgconfig*' -exec dirname {} \; | head -n 1)
export PKG_CONFIG_PATH="$libdir"
export LD_LIBRARY_PATH="$(dirname "$libdir")"

# The C program: proves the headers are C and pkg-config gives what it needs.
cc -std=c11 -Wall -Wextra -pedantic -Werror $flags "$src/consumer.c" -o "$work/c_app" \
    $(pkg-config --cflags --libs --static tessar)
"$work/c_app"

# The C++ program through the CMake package.
cmake -S "$src/cpp" -B "$work/cpp_build" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags" >"$work/cpp_configure.log"
cmake --build "$work/cpp_build" >"$work/cpp_build.log"
"$work/cpp_build/cpp_app"
echo "consumer programs built and ran against $prefix"
