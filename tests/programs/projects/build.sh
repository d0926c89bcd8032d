#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds the projects with SDCC for the MC68HC908GP32 and leaves, beside the sources, what the tests
# read: S-record image, debug file, map and relocated listings. Names of sources are given relative
# to the project's folder. The outputs are committed, so only someone who changes a program runs this;
# check.sh tells which lines of stops.tsv and lines.tsv no longer fit.
set -eu
cd "$(dirname "$0")"
here=$PWD
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Objects and listings are named after the source's whole path: two modules of one name do not link.
object() {
  echo "${1%.c}" | tr / _
}

# project NAME OPTIONS SOURCES...: the stack starts at the end of RAM, which only the module with
# main() takes seriously.
project() {
  name=$1
  options=$2
  shift 2
  cp -r "$name" "$work"
  cd "$work/$name"
  objects=
  for source in "$@"; do
    object=$(object "$source").rel
    # shellcheck disable=SC2086
    sdcc -mhc08 --debug --stack-loc 0x23f $options -c "$source" -o "$object"
    objects="$objects $object"
  done
  # shellcheck disable=SC2086
  sdcc -mhc08 --debug --data-loc 0x80 --code-loc 0x8000 $options --out-fmt-s19 $objects -o "$name.s19"
  for source in "$@"; do cp "$(object "$source").rst" "$here/$name"; done
  cp "$name.s19" "$name.cdb" "$name.map" "$here/$name"
  cd "$here"
}

# The handler may come in everywhere: locals of functions that do not call each other lie apart.
project folders '-Iinclude --nooverlay' src/main.c src/io.c drivers/io.c drivers/clock.c
project stackauto '--stack-auto' main.c shapes.c
project lines '' main.c
