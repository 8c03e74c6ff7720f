#!/bin/sh
# Layers run downward only: checks every #include of the sources against the table of allowed edges.
# layers.sh SOURCE_DIRECTORY
cd "$1" || exit 2
find src -name '*.cpp' -o -name '*.hpp' -o -name '*.inl' | sort | xargs awk '
  BEGIN {
    below["core"] = "core"
    below["matrix"] = "core matrix"
    below["host"] = below["numeric"] = below["signal"] = below["wavelet"] = below["matrix"]
    below["segment"] = "core matrix signal"
    below["classify"] = "core matrix numeric"
    below["image"] = "core matrix signal segment"
    below["curve"] = "core matrix segment image"
    for (room in below) below[room] = " " below[room] " " room " tests "
  }
  FNR == 1 { split(FILENAME, path, "/"); room = path[2]; is_test = FILENAME ~ /_test\.cpp$/ }
  /^#include "|^#define KORVO_KERNELS "/ {
    split($0, quoted, "\"")
    target = quoted[2]
    sub(/^korvos\//, "", target)
    if (target == "korvos.h" && is_test) next
    sub(/\/.*/, "", target)
    ++seen
    if (target == "tests" ? !is_test : index(below[room], " " target " ") == 0) {
      printf "%s:%d: %s must not include %s\n", FILENAME, FNR, room, quoted[2]
      ++wrong
    }
  }
  END { printf "%d includes, %d against the layers\n", seen, wrong; exit !seen || wrong > 0 }'
