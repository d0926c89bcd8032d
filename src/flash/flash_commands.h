// SPDX-License-Identifier: MIT
// The flash commands: each asks or refuses, then starts a job. True when the job is under way; else
// the user has been told and the job's status says why.
#pragma once

#include <string>

#include "base/address.h"
#include "control/target_crc.h"
#include "flash/flash_job.h"
#include "images/image_file.h"

namespace brevant::flash {

// Asks first.
bool MassEraseCommand(FlashJob& job);
bool MassEraseFlash(FlashJob& job);
// Both inclusive; whole pages are erased, see PlanErase. Asks first.
bool EraseFlashRange(FlashJob& job, base::Address start, base::Address end);
// Whole pages, as PagesOf names them. Does not ask: an oscillator trim in them is written back
// unless what is programmed next holds its place.
bool ErasePages(FlashJob& job, const devices::MemoryRange& pages,
                const images::Image& programmed_next = {});
// The monitor's stop-on-IRQ routine into the IRQ vector.
bool ProgramIrqVector(FlashJob& job);
// Any number of bytes.
bool ProgramFlashLocations(FlashJob& job, base::Address address, base::Bytes bytes);
// Whether flash can take all that the file holds; else the user has been told.
bool FitsFlash(FlashJob& job, const std::string& path, const images::ImageFile& file);
// Stores the name of a file that could be read.
bool ProgramFlashFile(FlashJob& job, const std::string& path);
// The same for who has read it already; ParseFlashRecords has to have parsed it. With crc, what
// stands in flash already is left alone, unless the settings say otherwise or flash cannot be read.
bool ProgramFlashFile(FlashJob& job, const std::string& path, const images::ImageFile& file,
                      control::TargetCrc* crc = nullptr);

}  // namespace brevant::flash
