#!/bin/sh
# Prints the linker's version script: version_script.sh INCLUDE_DIRECTORY
echo 'KORVOS_1.0 {'
echo '  global:'
sh "$(dirname "$0")/declared_names.sh" "$1" | sed 's/.*/    &;/'
echo '  local: *;'
echo '};'
