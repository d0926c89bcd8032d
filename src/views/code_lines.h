// SPDX-License-Identifier: MIT
// The lines of code that one program view holds: each an instruction read from the target and
// disassembled. Moving by a line keeps the others and reads one. Rests on the door to memory
// and the disassembler.
//
// Cost on the wire: at most 4 bytes a line forwards and 24 bytes a line backwards, as for a single
// line; less for each of many, whose bytes overlap.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/address.h"
#include "isa/disassembler.h"
#include "isa/symbol_names.h"
#include "memory/code_bytes.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"
#include "symbols/operand_names.h"
#include "views/scroll_code.h"
#include "views/scroll_range.h"

namespace brevant::views {

struct CodeLine {
  base::Address address = 0;
  std::string text;                     // as the disassembler writes it, tabs and all
  int length = 0;                       // of the instruction; 0 when it is not known
  std::array<std::uint8_t, 4> bytes{};  // from the address on
};

class CodeLines {
 public:
  CodeLines(memory::Memory& memory, const symbols::DebugInfo& debug_info,
            const base::SettingsFile& settings)
      : memory_(memory),
        debug_info_(debug_info),
        symbols_(debug_info.SymbolTable, memory, settings) {}

  const std::vector<CodeLine>& lines() const { return lines_; }
  base::Address top() const { return lines_.empty() ? 0 : lines_.front().address; }
  // The address after the last line's instruction.
  base::Address bottom() const { return bottom_; }

  // While off, lines show asterisks and nothing is read: the program has the serial line. They show
  // asterisks too when the link is lost while they are read.
  void SetReadsTarget(bool reads) { reads_target_ = reads; }

  // The code is no longer what it was.
  void Forget() { before_.clear(); }

  // count lines from the address on.
  void FillFrom(base::Address address, int count);
  // Drops lines from the end, or reads more there.
  void Resize(int count);
  // Moves the window over the code by one of the scroll bar's requests; position goes with
  // ThumbTrack. Nothing moves above address 0: a page up that would reads from 0 on instead.
  void RecomputeLines(ScrollCode code, int position, const ScrollRange& range);

 private:
  // An instruction or a variable begins here, as the loaded program's symbols and lines say.
  bool KnownStart(base::Address address) const;
  // One of so many lines that are filled with the same bytes.
  CodeLine FillLineForward(memory::CodeBytes& bytes, base::Address& address, int lines_to_come);
  // The instruction before below; below.address must not be 0.
  CodeLine FillLineBackward(memory::CodeBytes& bytes, const CodeLine& below, int lines_to_come);
  // The one that was met before going forwards.
  std::optional<CodeLine> KnownLineBefore(base::Address address);
  void LineUp();
  void LineDown(const ScrollRange& range);
  void PageUp();
  int count() const { return static_cast<int>(lines_.size()); }

  memory::Memory& memory_;
  const symbols::DebugInfo& debug_info_;
  symbols::OperandNames symbols_;
  // By the address behind it, where each instruction begins that was met going forwards: the way
  // back shows the same instructions and costs nothing.
  std::map<base::Address, base::Address> before_;
  bool reads_target_ = true;
  std::vector<CodeLine> lines_;
  base::Address bottom_ = 0;
};

// Up to count lines of instructions from the address on: fewer at the end of the address space and
// when the link is lost. Costs what CodeLines does.
std::vector<CodeLine> ReadCodeLines(memory::Memory& memory, const isa::SymbolNames& symbols,
                                    base::Address address, int count);
// One line for the instruction at the address; address moves on to the next one. Reads 4 bytes.
CodeLine ReadCodeLine(memory::Memory& memory, const isa::SymbolNames& symbols,
                      base::Address& address);

}  // namespace brevant::views
