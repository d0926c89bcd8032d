#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds the test programs with SDCC for the MC68HC908GP32 and leaves, beside the sources, what the
# tests read: S-record image, debug file, map and relocated listing; for some an Intel HEX image.
# The outputs are committed, so only someone who changes a program runs this.
set -eu
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp ./*.c ./*.h ./*.asm "$work"
here=$PWD
cd "$work"

# The stack starts at the end of RAM. Only the module with main() takes this option seriously.
compile='sdcc -mhc08 --debug --stack-loc 0x23f'
link='sdcc -mhc08 --debug --data-loc 0x80 --code-loc 0x8000'

# program NAME MODULES...: the image is named NAME, the modules are linked in this order.
program() {
  name=$1
  shift
  for module in "$@"; do $compile -c "$module.c"; done
  # shellcheck disable=SC2046
  $link --out-fmt-s19 $(printf '%s.rel ' "$@") -o "$name.s19"
  for module in "$@"; do cp "$module.rst" "$here"; done
  cp "$name.s19" "$name.cdb" "$name.map" "$here"
}
hex() {
  $link --out-fmt-ihx "$1.rel" -o "$1.ihx"
  cp "$1.ihx" "$here"
}

for name in counters recursion structs timer arithmetic strings pointers longnames endings; do
  program $name $name
done
program modules modules modules_other
hex counters
hex arithmetic

sdas6808 -ylosp assembler.rel assembler.asm
sdld6808 -muwx -y -s -b CSEG=0x8000 -b DSEG=0x80 assembler.s19 assembler.rel >/dev/null
cp assembler.s19 assembler.cdb assembler.map assembler.rst "$here"
