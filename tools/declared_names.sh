#!/bin/sh
# Prints the names that the public headers declare for export, sorted: declared_names.sh INCLUDE_DIRECTORY
find "$1" -name '*.h' -exec cat {} + |
  sed -n 's/^\(extern \)\{0,1\}KORVO_API [^(;]*[ *]\([A-Za-z_][A-Za-z0-9_]*\)\(\[[^]]*\]\)\{0,1\} *[(;].*/\2/p' |
  LC_ALL=C sort
