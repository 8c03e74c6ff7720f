#!/bin/sh
# Installs the library, moves the install tree, and uses it as CMake package and through pkg-config:
# run.sh BUILD_DIRECTORY SOURCE_DIRECTORY C_COMPILER GENERATOR
set -e
build=$1 source=$2 compiler=$3 generator=$4
work=$build/consumer-test
rm -rf "$work"
cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved"

cmake -G "$generator" -S "$source/tests/consumer" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$work/moved" \
  -DCMAKE_C_COMPILER="$compiler" >/dev/null
cmake --build "$work/cmake" >/dev/null
"$work/cmake/consumer"

PKG_CONFIG_PATH=$(dirname "$(find "$work/moved" -name korvos.pc)")
export PKG_CONFIG_PATH
# shellcheck disable=SC2046
"$compiler" -std=c11 -Wall -Wextra -pedantic -Werror "$source/tests/client.c" -o "$work/by-pkg-config" \
  $(pkg-config --cflags --libs korvos)
LD_LIBRARY_PATH=$(pkg-config --variable=libdir korvos) "$work/by-pkg-config"
echo "used as CMake package and through pkg-config"
