// SPDX-License-Identifier: MIT
// Writes of the console's commands: what takes no write is refused with the reason before the first
// byte, and what was written is looked at.
#pragma once

#include "base/address.h"
#include "cli/session.h"

namespace brevant::cli {

// Both inclusive. A failure when one of the addresses takes no write.
Result CheckWritable(Session& session, base::Address first, base::Address last);

// A register may well read differently from what was written, which is a notice; RAM may not.
Result WriteAndTell(Session& session, base::Address address, base::Bytes bytes);
}  // namespace brevant::cli
