// SPDX-License-Identifier: MIT
// From the line records of SDCC's debug file, and the listings beside it, to line entries and
// source files, by the rules that sdcc_cdb.h gives.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "symbols/parsed_program.h"
#include "symbols/sdcc_sources.h"

namespace brevant::symbols {

struct SdccLineRecords {
  struct Line {
    base::Address address = 0;
    std::uint32_t line = 0;
    std::string name;  // the C file, or the module of an assembler line
  };
  std::vector<Line> c_lines;
  std::vector<Line> assembler_lines;
  // Ends are where the last instruction starts: a return has one byte.
  std::vector<Function> functions;
};

// The module's listing where it lies beside the image and was made with this build; else null. One
// of another build would put every line elsewhere.
const SdccListing* ListingOfBuild(std::string_view module, const SdccLineRecords& records,
                                  SdccSources& sources);

// Fills program's lines, files and functions.
void BuildSdccLines(SdccLineRecords records, SdccSources& sources, ParsedProgram& program);

}  // namespace brevant::symbols
