// SPDX-License-Identifier: MIT
// What a trace shows besides its log: the records as a table for other programs, and where the
// cycles went. Pure functions of the records and the debug information; the target is never read.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "control/trace_log.h"
#include "symbols/debug_info.h"

namespace brevant::control {

// "0080=12", "00fe-00ff=8003", "0080" where the value is not known from the registers; empty where
// the instruction writes no memory.
std::string WritesText(const TraceRecord& record);

// A line of names, then one a record, oldest first, ends CR LF. The records are the last ones of so
// many steps; cycles are added up from the first line on.
std::string FormatTraceCsv(const TraceRing& ring, long steps, const symbols::DebugInfo& info,
                           const isa::SymbolNames& names);

struct ProfileRow {
  std::string name;           // a function, or a line "io.c:7"
  base::Address address = 0;  // of the first of its instructions in the trace
  long steps = 0;
  long cycles = 0;
};
// Each most cycles first. Both add up to the total: what belongs to no function or line has a row.
struct TraceProfile {
  std::vector<ProfileRow> functions, lines;
  long steps = 0;
  long cycles = 0;
};
TraceProfile ProfileOf(const TraceRing& ring, const symbols::DebugInfo& info);

// Of all cycles, 0 to 1.
double ShareOf(const ProfileRow& row, const TraceProfile& profile);
// "main        120   12  45.1 %", below the heading of its columns.
std::string ProfileRowText(const ProfileRow& row, const TraceProfile& profile);
std::string ProfileHeading(const char* what);
// "312 cycles in 128 steps"
std::string ProfileTotal(const TraceProfile& profile);

}  // namespace brevant::control
