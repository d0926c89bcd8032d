// SPDX-License-Identifier: MIT
// Reads a stretch of target memory in portions, so that progress can be shown between them.
#pragma once

#include <cstddef>

#include "base/address.h"
#include "base/function_ref.h"
#include "memory/memory.h"

namespace brevant::load {

// Receives each portion; false stops the reading.
using PortionSink = base::FunctionRef<bool(base::Address address, base::Bytes bytes)>;

enum class RangeResult { Complete, Stopped, LinkLost };

// A portion that was cut short by a link failure is not handed over.
RangeResult ReadRange(memory::Memory& memory, base::Address first, std::size_t count,
                      PortionSink sink);

}  // namespace brevant::load
