// SPDX-License-Identifier: MIT
// A line of assembly text either is refused or becomes an instruction whose disassembly
// assembles to the same bytes.
#include <cstdlib>
#include <string_view>

#include "isa/assembler.h"
#include "isa/disassembler.h"

using namespace brevant::isa;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const NoSymbols symbols;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  constexpr brevant::base::Address kAddress = 0x8000;
  const auto assembled = AssembleLine(text, kAddress, symbols);
  if (!assembled) return 0;
  const std::string line = Disassemble(*assembled, symbols);
  const auto again = AssembleLine(EditableText(line), kAddress, symbols);
  if (again && again->length() == assembled->length() && again->bytes != assembled->bytes)
    std::abort();
  return 0;
}
