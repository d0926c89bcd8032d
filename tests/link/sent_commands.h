// SPDX-License-Identifier: MIT
// The bytes that the host has sent, as text to compare with.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/address.h"
#include "base/text_format.h"

namespace brevant::link {

// What the host has sent, a command a word: R0100 READ, W0100=12 WRITE, r IREAD, w12 IWRITE, SP,
// RUN.
inline std::string DecodeCommands(const std::vector<std::uint8_t>& sent) {
  std::string text;
  const auto word = [&](std::size_t i) { return base::Word(sent.at(i), sent.at(i + 1)); };
  for (std::size_t i = 0; i < sent.size();) {
    if (i > 0) text += ' ';
    switch (sent[i]) {
      case 0x4A:
        text += base::Format("R%04X", word(i + 1));
        i += 3;
        break;
      case 0x49:
        text += base::Format("W%04X=%02X", word(i + 1), sent.at(i + 3));
        i += 4;
        break;
      case 0x19:
        text += base::Format("w%02X", sent.at(i + 1));
        i += 2;
        break;
      default:
        text += sent[i] == 0x1A ? "r" : sent[i] == 0x0C ? "SP" : sent[i] == 0x28 ? "RUN" : "?";
        ++i;
    }
  }
  return text;
}

}  // namespace brevant::link
