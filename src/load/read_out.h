// SPDX-License-Identifier: MIT
// Saves a stretch of target memory as a file.
#pragma once

#include <span>
#include <string>

#include "base/address.h"
#include "control/target_crc.h"
#include "devices/device.h"
#include "images/image.h"
#include "load/progress.h"
#include "memory/memory.h"

namespace brevant::load {

enum class ReadOutOutcome {
  Saved,
  UnknownFormat,  // the extension is none of s19, sx, hex and bin
  BadRange,       // an address above $FFFF, or the last below the first
  Cancelled,
  LinkLost,
  Damaged,     // the line is too noisy to tell what stands somewhere
  NotWritten,  // see error
};

struct ReadOutResult {
  ReadOutOutcome outcome = ReadOutOutcome::Saved;
  long bytes = 0;  // in the file
  // Damaged: where. LinkLost: the first that was not confirmed.
  base::Address address = 0;
  std::string error;  // why the file could not be written, in the system's words
};

// From first to last, inclusive. The file is replaced in one step once everything has been read;
// unless the result is Saved, what stood there before stands there still.
// What is saved has been confirmed, see ReadConfirmed.
ReadOutResult ReadOut(memory::Memory& memory, control::TargetCrc& crc, base::Address first,
                      base::Address last, const std::string& path, Progress progress);
// Several stretches as one S-record file, beside what is known already.
ReadOutResult ReadOut(memory::Memory& memory, control::TargetCrc& crc,
                      std::span<const devices::MemoryRange> ranges, images::Image known,
                      const std::string& path, Progress progress);

}  // namespace brevant::load
