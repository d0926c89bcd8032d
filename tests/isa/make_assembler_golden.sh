#!/bin/sh
# SPDX-License-Identifier: MIT
# Makes assembler_golden.tsv: every legal opcode as a line of our syntax with its address, and the
# bytes that SDCC's assembler (sdas6808) gives for the same instruction.
set -eu
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Operand forms by mode: ours | theirs. N is the bit number, A B bytes, W a word, +F -F the target.
awk -F '\t' -v asm="$work/rows.asm" -v ours="$work/ours" '
  function form(mode, us, them) { our[mode] = us; their[mode] = them }
  function fill(text, number) {
    gsub(/A/, number "6" row % 10, text); gsub(/B/, number "F" row % 10, text)
    gsub(/W/, number "A" row % 10 "C4", text); gsub(/N/, bit, text)
    return text
  }
  BEGIN {
    form("DIRREL", "A,@", "*A,@");        form("IMMREL", "#A,@", "#A,@")
    form("INHREL", "@", "@");             form("REL", "@", "@")
    form("IX1+REL", "A,X+,@", "A,x+,@");  form("IX+REL", "X+,@", ",x+,@")
    form("IX1REL", "A,X,@", "A,x,@");     form("IXREL", "X,@", ",x,@")
    form("SP1REL", "A,SP,@", "A,s,@");    form("INH", "", "")
    form("DIR", "A", "*A");               form("EXT", "W", "W")
    form("IX", ",X", ",x");               form("IX1", "A,X", "A,x")
    form("IX2", "W,X", "W,x");            form("SP1", "A,SP", "A,s")
    form("SP2", "W,SP", "W,s");           form("IMM", "#A", "#A")
    form("IMM16", "#W", "#W");            form("DD", "A,B", "*A,*B")
    form("DIX+", "A,X+", "*A,x+");        form("IMD", "#A,B", "#A,*B")
    form("IX+D", "X+,A", ",x+,*A")
    print "\t.area\tCODE (ABS)\n\t.org\t0x8000" > asm
  }
  NR > 1 {
    row++
    name = $3; us = our[$4]; them = their[$4]
    if (name ~ /^(BRSET|BRCLR|BSET|BCLR)[0-7]$/) {
      bit = substr(name, length(name)); name = substr(name, 1, length(name) - 1)
      us = "N," us; them = "#N," them
    }
    if (us == "" && $4 != "INH") { print "no form for mode " $4 > "/dev/stderr"; exit 1 }
    offset = row % 2 ? 32 + row % 64 : -(32 + row % 64)
    target = sprintf(".%s0x%x", offset < 0 ? "-" : "+", offset < 0 ? -offset : offset)
    them = fill(them, "0x"); sub(/@/, target, them)
    printf "\t%s\t%s\n", tolower(name), them > asm
    printf "%s %s\t%d\n", name, fill(us, ""), offset > ours
  }' opcodes.tsv

(cd "$work" && sdas6808 -l rows.asm)

# Listing lines: address, bytes, cycles in brackets, line number, source.
sed -n 's/^ *\([0-9A-F]\{4\}\) \([0-9A-F ]*\)\[.*/\1\t\2/p' "$work/rows.lst" |
  sed 's/ *$//' > "$work/theirs"
test "$(wc -l < "$work/theirs")" = "$(wc -l < "$work/ours")"
paste "$work/theirs" "$work/ours" | while IFS='	' read -r address bytes text offset; do
  target=$(printf '%x' $((0x$address + offset)))
  printf '%s\t%s\t%s\n' "$address" "$(echo "$text" | sed "s/@/$target/; s/ *\$//")" "$bytes"
done > assembler_golden.tsv
