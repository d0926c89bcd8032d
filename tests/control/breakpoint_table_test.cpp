// SPDX-License-Identifier: MIT
#include "control/breakpoint_table.h"

#include "control/bench.h"
#include "control/messages.h"

namespace brevant::control {
namespace {

class BreakpointTableTest : public Bench {};

TEST_F(BreakpointTableTest, ReusesTheFirstFreeEntryAndCountsThroughTheGaps) {
  for (base::Address a : {0x100u, 0x110u, 0x120u}) breakpoints.AddBreakpoint(a);
  breakpoints.RemoveBreakpoint(0x110);
  EXPECT_EQ(breakpoints.count(), 2);
  EXPECT_FALSE(breakpoints.Has(0x110));
  EXPECT_EQ(breakpoints.NthBreakpoint(1), 2);
  EXPECT_EQ(breakpoints.NthBreakpoint(2), kNoBreakpoint);
  breakpoints.AddBreakpoint(0x130);
  EXPECT_EQ(breakpoints.FindBreakpoint(0x130), 1);
  breakpoints.Clear();
  EXPECT_EQ(breakpoints.FindBreakpoint(0x100), kNoBreakpoint);
  EXPECT_EQ(breakpoints.count(), 0);
}

TEST_F(BreakpointTableTest, RefusesTheSecondInHardwareAndTheHundredFirstInSoftware) {
  EXPECT_FALSE(BreakpointLimit(breakpoints, true));
  breakpoints.AddBreakpoint(0x100);
  const auto hardware = BreakpointLimit(breakpoints, true);
  ASSERT_TRUE(hardware);
  EXPECT_EQ(hardware->text, "You can setup only 1 breakpoints\nwhen debugging code in flash");
  EXPECT_EQ(hardware->caption, "Error Message");
  EXPECT_EQ(hardware->icon, base::Icon::Information);
  for (base::Address a = 1; a < 100; ++a) {
    ASSERT_FALSE(BreakpointLimit(breakpoints, false)) << a;
    breakpoints.AddBreakpoint(0x100 + a);
  }
  const auto software = BreakpointLimit(breakpoints, false);
  ASSERT_TRUE(software);
  EXPECT_EQ(software->text, "You can setup only 100 breakpoints\n");
  breakpoints.AddBreakpoint(0x300);
  EXPECT_EQ(breakpoints.count(), 100);
  EXPECT_FALSE(breakpoints.Has(0x300));
}

TEST_F(BreakpointTableTest, PlantsAndRestoresInTableOrder) {
  target.board().Load(0x0150, ByteList{0xA6, 0x12, 0x9D});
  breakpoints.AddBreakpoint(0x0152);
  breakpoints.AddBreakpoint(0x0150);
  target.board().ClearHostLog();
  breakpoints.InsertBreakpoints(false);
  EXPECT_EQ(Commands(), "R0152 W0152=83 R0150 W0150=83");
  EXPECT_EQ(Peek(0x0150), 0x83);
  target.board().Load(0x0150, ByteList{0xA7});  // the program was loaded anew there
  target.board().ClearHostLog();
  breakpoints.RemoveBreakpoints(false);
  EXPECT_EQ(Commands(), "R0152 W0152=9D R0150");
  EXPECT_EQ(Peek(0x0150), 0xA7);
}

TEST_F(BreakpointTableTest, TouchesNoCodeInHardwareMode) {
  target.board().Load(0x0150, ByteList{0x83});  // an SWI of the program's own
  breakpoints.AddBreakpoint(0x0140);
  breakpoints.AddBreakpoint(0x0150);
  breakpoints.RemoveBreakpoint(0x0140);
  target.board().ClearHostLog();
  breakpoints.InsertBreakpoints(true);
  EXPECT_EQ(Commands(), "RFE08 w01 w50 WFE0B=80");
  breakpoints.RemoveBreakpoints(true);
  EXPECT_EQ(Commands(), "");
  breakpoints.Clear();
  breakpoints.InsertBreakpoints(true);
  EXPECT_EQ(Commands(), "");
}

TEST_F(BreakpointTableTest, TwoStepSlotsAtOneAddressEndWithTheCodeByte) {
  target.board().Load(0x0150, ByteList{0x9D});
  breakpoints.PlantStep(1, 0x0150);
  breakpoints.PlantStep(0, 0x10150);
  EXPECT_EQ(Peek(0x0150), 0x83);
  breakpoints.ClearStepBreakpoints();
  EXPECT_EQ(Peek(0x0150), 0x9D);
  EXPECT_FALSE(breakpoints.StepPlanted());
}

}  // namespace
}  // namespace brevant::control
