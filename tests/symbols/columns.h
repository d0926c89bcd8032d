// SPDX-License-Identifier: MIT
// Lines of listings, written by their columns.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace brevant::symbols {

// The texts at their columns, spaces between them, and a line end.
inline std::string Line(const std::vector<std::pair<std::size_t, std::string>>& parts) {
  std::string line;
  for (const auto& [column, text] : parts) {
    line.resize(column, ' ');
    line += text;
  }
  return line + "\n";
}

// A small listing of each assembler, with the same program: "table" (2 bytes), "start" and "loop".
inline std::string FreeListing() {
  return "head\nas12 assembler\n\n\n\n" + Line({{0, "0080"}, {24, "table: rmb 2"}}) +
         Line({{24, "; nothing but a comment"}}) + Line({{24, "start"}}) + Line({{24, "again:"}}) +
         Line({{0, "8000"}, {5, "A6 05"}, {24, " lda #5"}}) +
         Line({{0, "8002"}, {5, "4A"}, {24, "loop: deca"}}) +
         Line({{0, "8003"}, {5, "26 FD"}, {24, " bne loop"}});
}
inline std::string MotorolaListing() {
  return "head\n68HC12 assembler\n\n\n\n\n" + Line({{26, "PRT"}, {30, "0000 0040"}}) +
         Line({{7, "008000"}, {26, "start lda #5"}}) + Line({{7, "008002"}, {26, "loop deca"}}) +
         Line({{7, "008003"}, {26, "\tbne loop"}}) + Line({{7, "page 1"}, {26, "not a line"}});
}
inline std::string McuezParameters() {
  return "SEGMENTS\n  MY_RAM = READ_WRITE 0x0080 TO 0x00FF;\n"
         "  my_rom = READ_ONLY 0x8000 TO 0xFDFF;\nEND\n";
}
inline std::string McuezListing() {
  return "MCUEZ\n" + Line({{4, "1"}, {32, "; comment"}}) +
         Line({{4, "2"}, {32, "my_ram: SECTION"}}) +
         Line({{4, "3"}, {13, "000000"}, {32, "table: DS.B 2"}}) +
         Line({{4, "4"}, {32, "MY_ROM SECTION"}}) +
         Line({{4, "5"}, {20, "0001 0203"}, {32, "LIMIT: EQU $00010203"}}) +
         Line({{4, "6"}, {32, "start:"}}) +
         Line({{4, "7"}, {13, "000000"}, {20, "A605"}, {32, " LDA #5"}}) +
         Line({{4, "8"}, {13, "000002"}, {20, "4A"}, {32, "loop: DECA"}}) +
         Line({{4, "9"}, {13, "000003"}, {20, "26FD"}, {32, " BNE loop"}});
}
inline std::string ImagecraftMap() {
  return "map\nArea  text\n\n       Addr   Global\n       ----   ------\n" +
         Line({{7, "8000"}, {13, "_main"}}) + Line({{7, "8000"}, {13, "main.c.12"}}) +
         Line({{7, "8003"}, {13, "main.13"}}) + Line({{7, "8010"}, {13, "other.5"}}) +
         Line({{7, "80FF"}, {13, "__bss_start"}}) + "\n" + Line({{7, "9000"}, {13, "_outside"}}) +
         "Area  bss\n       Addr   Global\n       ----   ------\n" +
         Line({{7, "0080"}, {13, "_counter"}}) + Line({{7, "0082"}, {13, "__bss_end"}});
}
inline std::string ImagecraftCmd() {
  return "LINE 1 7000\nFILE main.c\nDEF _main 8000\nLINE 12 8000\nLINE 13 8003\nREG PC 8000\n"
         "FILE util.c\nLINE 5 8010\nDEF _broken\nREG SP 0100\n";
}

}  // namespace brevant::symbols
