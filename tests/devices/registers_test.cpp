// SPDX-License-Identifier: MIT
#include "devices/registers.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "base/file_names.h"
#include "devices/device.h"

namespace brevant::devices {
namespace {

TEST(Registers, LieWhereTheDeviceHasRegistersAndTheirFieldsShareNoBit) {
  for (const Device& device : All()) {
    SCOPED_TRACE(device.name);
    std::set<std::string> names;
    base::Address below = 0;
    for (const Register& row : device.registers()) {
      SCOPED_TRACE(row.name);
      EXPECT_EQ(KindOf(device, row.address), MemoryKind::Registers);
      EXPECT_TRUE(names.empty() || row.address > below) << "ascending, none twice";
      below = row.address;
      EXPECT_TRUE(names.insert(base::UpperCase(row.name)).second);
      EXPECT_EQ(FindRegister(device, row.address), &row);
      EXPECT_EQ(FindRegister(device, row.name), &row);
      int free = 8;
      for (const Field& field : row.fields) {
        EXPECT_LT(field.high, free) << field.name;
        EXPECT_GE(field.high, field.low) << field.name;
        EXPECT_GE(field.low, 0) << field.name;
        free = field.low;
        EXPECT_EQ(FindField(row, field.name), &field) << "one of that name";
      }
    }
    EXPECT_EQ(FindRegister(device, 0x0040), nullptr);
  }
}

TEST(Registers, AreFoundByNameInEitherCaseAndTheirBitsByNumber) {
  const Device& gp32 = *ByOption("gp32");
  const Register* const row = FindRegister(gp32, "t1sc");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->address, 0x0020u);
  const Field* const prescaler = FindField(*row, "ps");
  ASSERT_NE(prescaler, nullptr);
  EXPECT_EQ(prescaler->ValueIn(0xFB), 3u);
  EXPECT_EQ(prescaler->With(0xF8, 5), 0xFD);
  EXPECT_EQ(prescaler->With(0xFF, 8), 0xF8) << "bits beside it stay";
  EXPECT_EQ(FindField(*row, "7")->With(0, 1), 0x80);
  EXPECT_EQ(FindField(*row, "8"), nullptr);
  EXPECT_EQ(PartsOf(*FindRegister(gp32, "PTA")).size(), 8u);
  EXPECT_EQ(FindRegister(*ByOption("ql"), "T1SC"), nullptr);
}

// Where the data sheets have them.
TEST(Registers, OfTheTwoDevicesDiffer) {
  struct Case {
    const char* device;
    const char* name;
    base::Address address;
    const char* read_effect;
  };
  const Case cases[] = {
      {"gp32", "PTE", 0x0008, ""},   {"gp32", "DDRE", 0x000C, ""},
      {"gp32", "SCBR", 0x0019, ""},  {"gp32", "T2CH1L", 0x0035, ""},
      {"gp32", "ADCLK", 0x003E, ""}, {"gp32", "ADR", 0x003D, "clears COCO"},
      {"gp32", "LVISR", 0xFE0C, ""}, {"ql", "PTBPUE", 0x000C, ""},
      {"ql", "TCH1L", 0x002A, ""},   {"ql", "ADRL", 0x003E, "clears COCO"},
      {"ql", "ADICLK", 0x003F, ""},  {"ql", "OSCTRIM", 0x0038, ""},
  };
  for (const Case& c : cases) {
    const Device& device = *ByOption(c.device);
    const Register* const row = FindRegister(device, c.name);
    ASSERT_NE(row, nullptr) << c.name;
    EXPECT_EQ(row->address, c.address) << c.name;
    EXPECT_EQ(row->read_effect, c.read_effect) << c.name;
    EXPECT_EQ(FindReadEffect(device, c.address) != nullptr, *c.read_effect != 0) << c.name;
  }
}

}  // namespace
}  // namespace brevant::devices
