// SPDX-License-Identifier: MIT
// Places of the program as users name them. Rests on the debug information.
//
//   8036            a number, hexadecimal
//   main, _main     a symbol, with or without the compiler's "_"
//   add.sum         a variable of a function
//   io.c:sum        a symbol of one module or file
//   io.c:30         a line; the file by its last parts, as many as tell it from others
//   buf+4, buf-4    so many bytes (hexadecimal) behind or before one of these
//
// Letters of a name count in either case, but a name that is spelt exactly so comes first. Of
// symbols that share a name the global one is meant.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "symbols/debug_info.h"

namespace brevant::symbols {

struct Place {
  // None: the word names no place, for this reason; an empty one where it is no name at all.
  std::optional<base::Address> address;
  std::string problem = {};
  // The word is as it should be, but this program has nothing there, or several such places.
  bool well_formed = false;
  // What was taken, where the word could also mean something else.
  std::string note = {};
};

// A word of hexadecimal digits is a number, but letters are a name when there is one and no symbol
// lies at the number.
Place FindPlace(std::string_view word, const DebugInfo& info);

// All symbols that the word names, at one address the first only; those of other functions' locals
// only when there are no others. Valid until the table changes.
std::vector<const Symbol*> FindNamed(std::string_view word, const DebugInfo& info);

// The module that a source file makes, as SDCC spells it: "my_drv" of "src/my-drv.c".
std::string ModuleOf(std::string_view file);

// "main" of "_main": as C spells what compiler and linker put a "_" before.
std::string_view PlainName(std::string_view name);

// The symbol with the highest address that is not above this one: of a library only the beginnings
// of its functions are told. Null when there is none; valid until the table changes.
const Symbol* NearestBelow(base::Address address, const DebugInfo& info);

// The symbol in whose function or variable the address lies; null where that is not known.
const Symbol* FindContaining(base::Address address, const DebugInfo& info);

// The same by its name, with the offset in it: "_main", "buf+4". Empty where it is not known.
std::string NameWithOffset(base::Address address, const DebugInfo& info);

// "sub/io.c:30", '?' for a file that is not known.
std::string LineName(const SourceLine& line, const LineTable& table);

}  // namespace brevant::symbols
