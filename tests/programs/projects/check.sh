#!/bin/sh
# SPDX-License-Identifier: MIT
# Holds stops.tsv and lines.tsv of each project against what C says: the projects are built for the
# host, where the integers have the same width, and run there under gdb.
set -eu
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for name in folders stackauto lines; do
  program=$work/$name
  # shellcheck disable=SC2046
  (cd "$name" && cc -g -O0 -fwrapv -fno-inline -Wall -Wextra -Wno-main -Wno-misleading-indentation \
    -Wno-implicit-fallthrough -Wno-unused -Iinclude $(find . -name '*.c' | sed 's|^\./||' | sort) \
    -o "$program")
  (cd "$name" && gdb -nx -batch -x ../check.py "$program" >/dev/null)
done
