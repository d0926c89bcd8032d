// SPDX-License-Identifier: MIT
// Writes an image into the target's memory through the memory.
#pragma once

#include "control/register_frame.h"
#include "images/image_file.h"
#include "load/progress.h"
#include "load/start_address.h"
#include "memory/memory.h"

namespace brevant::load {

// Record by record, in file order. Each data record costs a READ of the address below it, then one
// IWRITE a byte; nothing is read back. What lies in flash or ROM is not written, as nothing would
// come of it: see Verify. EntryFromImage is cleared first; each entry record sets PC
// in the frame and the start address. False when progress, asked before each data record, ended it:
// what has been written stays. While LinkError is set nothing is written, and nothing said of it.
bool Transfer(const images::ImageFile& file, memory::Memory& memory, control::RegisterFrame& frame,
              StartAddress& start, Progress progress);

}  // namespace brevant::load
