// SPDX-License-Identifier: MIT
#include "control/breakpoint_table.h"

#include "control/bench.h"
#include "control/messages.h"

namespace brevant::control {
namespace {

class BreakpointTableTest : public Bench {};

TEST_F(BreakpointTableTest, RefusesTheSecondInHardwareAndTheHundredFirstInSoftware) {
  EXPECT_FALSE(BreakpointLimit(breakpoints));
  breakpoints.AddBreakpoint(0x100);
  const auto hardware = BreakpointLimit(breakpoints);
  ASSERT_TRUE(hardware);
  EXPECT_EQ(hardware->text, "You can setup only 1 breakpoints\nwhen debugging code in flash");
  EXPECT_EQ(hardware->caption, "Error Message");
  EXPECT_EQ(hardware->icon, base::Icon::Information);
  for (base::Address a = 1; a < 100; ++a) breakpoints.AddBreakpoint(0x100 + a);
  UseHardware(false);
  ASSERT_TRUE(BreakpointLimit(breakpoints));
  EXPECT_EQ(BreakpointLimit(breakpoints)->text, "You can setup only 100 breakpoints\n");
  breakpoints.AddBreakpoint(0x300);
  EXPECT_FALSE(breakpoints.Has(0x300));
  // A removed entry is the next to be used; the others keep their places.
  breakpoints.RemoveBreakpoint(0x110);
  EXPECT_FALSE(BreakpointLimit(breakpoints));
  EXPECT_EQ(breakpoints.NthBreakpoint(16), 17);
  EXPECT_EQ(breakpoints.NthBreakpoint(99), kNoBreakpoint);
  breakpoints.AddBreakpoint(0x300);
  EXPECT_EQ(breakpoints.FindBreakpoint(0x300), 16);
}

TEST_F(BreakpointTableTest, PutsBackOnlyWhatIsStillItsOwn) {
  Load(0x0150, ByteList{0xA6, 0x12, 0x9D});
  breakpoints.AddBreakpoint(0x0152);
  breakpoints.AddBreakpoint(0x0150);
  UseHardware(false);
  breakpoints.InsertBreakpoints();
  EXPECT_EQ(Peek(0x0150), kSwiOpcode);
  Load(0x0150, ByteList{0xA7});  // the program was loaded anew there
  target.board().ClearHostLog();
  breakpoints.RemoveBreakpoints();
  EXPECT_EQ(Commands(), "R0152 W0152=9D R0150 R0150");
  // In hardware mode no code is touched: this SWI is the program's.
  Load(0x0150, ByteList{0x83});
  breakpoints.RemoveBreakpoint(0x0152);
  UseHardware(true);
  breakpoints.InsertBreakpoints();
  EXPECT_EQ(Commands(), "RFE08 w01 w50 WFE0B=80");
  breakpoints.RemoveBreakpoints();
  EXPECT_EQ(Commands(), "");
}

TEST_F(BreakpointTableTest, TwoStepSlotsAtOneAddressEndWithTheCodeByte) {
  Load(0x0150, ByteList{0x9D});
  breakpoints.PlantStep(1, 0x0150);
  breakpoints.PlantStep(0, 0x10150);
  EXPECT_EQ(Peek(0x0150), 0x83);
  breakpoints.ClearStepBreakpoints();
  EXPECT_EQ(Peek(0x0150), 0x9D);
}

}  // namespace
}  // namespace brevant::control
