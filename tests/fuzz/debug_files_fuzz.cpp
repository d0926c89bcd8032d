// SPDX-License-Identifier: MIT
// Files of every tool chain. The first byte chooses the reader, a zero byte parts two files.
#include <algorithm>
#include <cstdint>
#include <string_view>

#include "symbols/free_assembler.h"
#include "symbols/imagecraft_cmd.h"
#include "symbols/imagecraft_map.h"
#include "symbols/info_files.h"
#include "symbols/mcuez_assembler.h"
#include "symbols/motorola_assembler.h"
#include "symbols/sdcc_cdb.h"
#include "symbols/sdcc_listing.h"
#include "symbols/sdcc_map.h"
#include "symbols/symbol_file.h"

using namespace brevant::symbols;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::string_view first = text.substr(0, text.find('\0'));
  const std::string_view second = text.substr(std::min(first.size() + 1, text.size()));
  switch (data[0] % 8) {
    case 0:
      ParseInfoFiles(ParseFreeAssemblerListing(first).info_files.value_or(InfoFiles{}));
      break;
    case 1:
      ParseInfoFiles(ParseMotorolaListing(first).info_files.value_or(InfoFiles{}));
      break;
    case 2:
      ParseInfoFiles(ParseMcuezListing(first, second).info_files.value_or(InfoFiles{}));
      break;
    case 3:
      ParseImagecraftCmd(first);
      break;
    case 4:
      ParseImagecraftMap(first, second);
      break;
    case 5: {
      SdccSources none;
      ParseSdccCdb(first, second, none);
      break;
    }
    case 6:
      ParseSdccListing(first);
      break;
    default:
      ParseSdccMap(first);
      ParseSymbolFile(first, second);
      break;
  }
  return 0;
}
