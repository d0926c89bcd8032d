// SPDX-License-Identifier: MIT
// What sets one flash command apart from the others: its routine, how that is brought into target
// RAM, and what the user sees meanwhile. One constant row a command.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "devices/device.h"
#include "flash/flash_routines.h"
#include "flash/messages.h"

namespace brevant::flash {

// One step of preparing the target.
enum class Step {
  Routine,      // its download
  FrameBase,    // where the monitor has stacked the registers
  StackedPc,    // at the routine, for RUN; needs the frame base
  CopOff,       // else the COP resets the target under the routine
  ErasedPages,  // which ones
  Block,        // the first block's data
  BlockPlace,   // where they belong
  VerifyClear,  // no block has failed yet
};

struct FlashTask {
  std::vector<std::uint8_t> (*routine)(const devices::FlashGeometry&);
  std::span<const Step> preparation;  // in the order of the wire
  const MessageText* not_started;
  // While the routine was at work. Its conversions: bytes programmed, bytes in all, address.
  const MessageText* link_lost;
  // Of the progress window, in which the user can cancel. Without one there is a busy cursor.
  const char* progress_title = nullptr;
  const char* progress_text = "";
  // How many may be programmed at one tick, each block polled for its end at once. 0: the timer
  // sees the end of a block or of an erase.
  int records_per_tick = 0;
};

namespace tasks {

inline constexpr std::array kLoadMassErase{Step::FrameBase, Step::Routine, Step::StackedPc};
inline constexpr std::array kLoadEraseRange{Step::ErasedPages, Step::Routine, Step::FrameBase,
                                            Step::StackedPc};
inline constexpr std::array kLoadIrqVector{Step::Routine, Step::FrameBase,  Step::StackedPc,
                                           Step::CopOff,  Step::BlockPlace, Step::CopOff,
                                           Step::Block};
inline constexpr std::array kLoadLocations{Step::Block,     Step::Routine, Step::FrameBase,
                                           Step::StackedPc, Step::CopOff,  Step::BlockPlace};
inline constexpr std::array kLoadFile{Step::Routine, Step::FrameBase, Step::StackedPc, Step::CopOff,
                                      Step::VerifyClear};

inline constexpr FlashTask kMassErase{MassEraseRoutine, kLoadMassErase, &messages::kMassEraseFailed,
                                      &messages::kMassEraseFailed};
inline constexpr FlashTask kEraseRange{
    EraseRangeRoutine,       kLoadEraseRange,      &messages::kEraseFailed,
    &messages::kEraseFailed, "Erase flash EEPROM", "Erasing flash EEPROM, please wait...  "};
inline constexpr FlashTask kIrqVector{ProgrammingRoutine, kLoadIrqVector,
                                      &messages::kIrqVectorFailed, &messages::kIrqVectorFailed};
inline constexpr FlashTask kLocations{ProgrammingRoutine, kLoadLocations,
                                      &messages::kLocationFailed, &messages::kLocationFailed};
inline constexpr FlashTask kFile{ProgrammingRoutine,
                                 kLoadFile,
                                 &messages::kProgramFailed,
                                 &messages::kLinkLostWhileProgramming,
                                 "Program flash EEPROM",
                                 "Start to program flash EEPROM...  ",
                                 5};

}  // namespace tasks
}  // namespace brevant::flash
