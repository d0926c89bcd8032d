// SPDX-License-Identifier: MIT
// The intermediate files of assembler listings, in the image's folder. "info.src" is the source
// text that the source window shows, one line for each listing line; "info.sym" holds one symbol a
// line (name, tab, hexadecimal value); "info.add" one address a line (address, tab, line number in
// "info.src", both hexadecimal).
#pragma once

#include <string>

#include "base/address.h"
#include "symbols/parsed_program.h"

namespace brevant::symbols {

inline constexpr const char* kInfoSource = "info.src";
inline constexpr const char* kInfoSymbols = "info.sym";
inline constexpr const char* kInfoAddresses = "info.add";

// Collects the contents while a listing is read.
class InfoFilesBuilder {
 public:
  void AddSourceLine(std::string_view text);
  // Values as the listing writes them: the readers below look at the hexadecimal digits.
  void AddSymbol(std::string_view name, std::string_view value);
  void AddSymbol(std::string_view name, base::Address value);
  // The last source line's address.
  void AddAddress(std::string_view address);
  void AddAddress(base::Address address);
  InfoFiles Take() { return std::move(files_); }

 private:
  InfoFiles files_;
  unsigned lines_ = 0;
};

// Empty, or what went wrong with which file.
std::string WriteInfoFiles(const std::string& directory, const InfoFiles& files);
// Symbols and lines of one source file, "info.src". Lines that do not hold a name and a value, or
// two numbers, are passed over; the value of a symbol is read from its hexadecimal digits alone.
ParsedProgram ParseInfoFiles(const InfoFiles& files);
ParsedProgram ReadInfoFiles(const std::string& directory);

}  // namespace brevant::symbols
