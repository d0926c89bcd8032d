// SPDX-License-Identifier: MIT
// Brings the flash routines and their parameters into target RAM and points the stacked PC at them.
// Knows nothing of when, why and what the user is told.
#pragma once

#include "base/address.h"
#include "base/settings_file.h"
#include "control/register_frame.h"
#include "devices/device.h"
#include "flash/flash_plan.h"
#include "flash/flash_routines.h"
#include "memory/memory.h"

namespace brevant::flash {

class FlashDriver {
 public:
  FlashDriver(memory::Memory& memory, control::RegisterFrame& frame,
              const base::SettingsFile& settings)
      : memory_(memory), frame_(frame), settings_(settings) {}

  // Of the device of setting "HC08Devices".
  const devices::FlashGeometry& flash() const;

  // Moves a program's stack out of the RAM that the routines use: the monitor works below the frame
  // and would overwrite parameters and data while they are being sent. A stack as after a reset
  // stays where it is. Needs the frame's SP to be the target's.
  void MakeRoom();
  // Routine, frame base, PC and COP off.
  void LoadProgrammingRoutine();
  void LoadMassEraseRoutine();
  void LoadEraseRangeRoutine(const ErasePlan& plan);

  void WriteBlockData(base::Bytes bytes);
  void WriteBlockParameters(base::Address address, std::size_t count);
  void WriteContinuedParameters(std::size_t count);
  // Reads the frame base and has RUN start the routine.
  void PointAtRoutine();
  void DisableCop();
  // The block that has just run did not read back as it was sent. Means nothing once LinkError is
  // set.
  bool VerifyFailed();

 private:
  void Download(base::Bytes routine);

  memory::Memory& memory_;
  control::RegisterFrame& frame_;
  const base::SettingsFile& settings_;
};

}  // namespace brevant::flash
