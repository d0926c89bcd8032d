// SPDX-License-Identifier: MIT
// Image and macro files. What an image holds stays within the address space.
#include <cstdlib>
#include <string_view>

#include "images/image_file.h"
#include "load/macro_script.h"

using namespace brevant::images;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const Block& block : ParseImage(text).ToImage().Blocks()) {
    if (block.address + block.bytes.size() > 0x10000) std::abort();
  }
  brevant::load::ParseMacroLine(text);
  return 0;
}
