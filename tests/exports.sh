#!/bin/sh
# What the shared library exports, needs and imports: exports.sh LIBRARY DECLARED_NAMES
library=$1 declared=$2
status=0
fail() {
  echo "$@"
  status=1
}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

nm -D --defined-only "$library" | awk '$2 != "A" {sub(/@.*/, "", $3); print $3}' | LC_ALL=C sort >"$scratch/exported"
[ -s "$scratch/exported" ] || fail "no exports at all"
diff "$declared" "$scratch/exported" >"$scratch/difference" ||
  fail "declared (<) and exported (>) names differ:" "$(cat "$scratch/difference")"
nm -D --defined-only "$library" | grep ' _Z' && fail "C++ symbols are exported"

readelf -d "$library" | grep -q 'SONAME.*\[libkorvos\.so\.1\]' || fail "wrong SONAME"
needed=$(readelf -d "$library" | sed -n 's/.*NEEDED.*\[\(.*\)\]/\1/p' | grep -vE '^(libc|libm|ld-linux.*)\.so')
[ -z "$needed" ] || fail "needs more than libc and libm: $needed"
imported=$(nm -D -u "$library" | awk '{sub(/@.*/, "", $2); print $2}' |
  grep -xE 'abort|exit|_exit|printf|vprintf|puts|putchar|stdout|stderr|perror|__assert_fail|__stack_chk_fail|_Z.*|__cxa_(throw|guard.*)')
[ -z "$imported" ] || fail "imports: $imported"
exit $status
