#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds the example programs with SDCC and checks what their comments promise. The outputs are
# committed, so only someone who changes an example runs this.
set -eu
cd "$(dirname "$0")"
here=$PWD
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp ./*.c ./*.asm "$work"
cd "$work"

# The linker ends every image with start address 0000. set_entry FILE ADDRESS writes the real one.
set_entry() {
  grep -v '^S9' "$1" >"$1.new"
  printf 'S903%04X%02X\n' "$(($2))" "$((255 - (3 + $2 / 256 + $2 % 256) % 256))" >>"$1.new"
  mv "$1.new" "$1"
}
# instruction LISTING ADDRESS: an instruction starts there.
instruction() {
  grep -q "^   $2 [0-9A-F][0-9A-F ]* \[ [0-9]\]" "$1" || {
    echo "no instruction starts at \$$2 in $1" >&2
    exit 1
  }
}

sdcc -mhc08 --debug -c demo.c
sdcc -mhc08 --debug --out-fmt-s19 --code-loc 0x100 --data-loc 0x80 demo.rel -o demo.s19
set_entry demo.s19 0x100
instruction demo.rst 0100
instruction demo.rst 0120

sdcc -mhc08 --debug -c fileio.c
sdcc -mhc08 --debug --out-fmt-s19 --code-loc 0x100 --data-loc 0x80 fileio.rel -o fileio.s19
set_entry fileio.s19 0x100
instruction fileio.rst 0100

sdcc -mhc08 --debug --stack-loc 0x23f -c blink.c
sdas6808 -ylosp blink_vectors.rel blink_vectors.asm
sdcc -mhc08 --debug --out-fmt-s19 --code-loc 0x8000 --data-loc 0x80 blink.rel blink_vectors.rel \
  -o blink.s19
set_entry blink.s19 0x8000
instruction blink.rst 8000

cp fileio.s19 fileio.cdb fileio.map fileio.rst "$here"
cp demo.s19 demo.cdb demo.map demo.rst blink.s19 blink.cdb blink.map blink.rst blink_vectors.rst "$here"
