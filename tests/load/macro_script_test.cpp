// SPDX-License-Identifier: MIT
#include "load/macro_script.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/text_format.h"

namespace brevant::load {
namespace {

std::string Meaning(const std::string& line) {
  const auto command = ParseMacroLine(line);
  if (!command) return "";
  switch (command->action) {
    case MacroAction::SetPc:
      return base::Format("pc=%x", command->address);
    case MacroAction::WriteByte:
      return base::Format("b %x=%x", command->address, command->value);
    case MacroAction::WriteWord:
      return base::Format("w %x=%x", command->address, command->value);
  }
  return "?";
}

TEST(MacroScript, ReadsCommandsAndPassesOverTheRest) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"PC 8000", "pc=8000"},
      {"  pc\t18000 ; wraps", "pc=8000"},
      {"dmm.b 1F 01 ; COP off", "b 1f=1"},
      {"DMM.B 1F 1FF", "b 1f=ff"},
      {"DMM.W FE00,1234\r", "w fe00=1234"},
      {"DMM.W,FE00,,1234,extra words", "w fe00=1234"},
      {"; PC 8000", ""},
      {"", ""},
      {"PC", ""},
      {"DMM.B 1F", ""},
      {"DMM.B 1G 01", ""},
      {"DMM.B 1F $1", ""},
      {"DMM.B 1F 00000001", ""},
      {"PC " + std::string(199, '0'), "pc=0"},
      {"PC " + std::string(200, '0'), ""},
      {"DMM.L 10 20", ""},
      {std::string(500, 'P') + " 8000", ""},
      {"PC;8000", ""}};
  for (const auto& [line, meaning] : cases) EXPECT_EQ(Meaning(line), meaning) << line;
}

}  // namespace
}  // namespace brevant::load
