// SPDX-License-Identifier: MIT
// How a transfer says how far it has come.
#pragma once

#include "base/function_ref.h"

namespace brevant::load {

// Bytes done and bytes in all; false stops the transfer.
using Progress = base::FunctionRef<bool(long done, long total)>;

}  // namespace brevant::load
