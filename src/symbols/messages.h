// SPDX-License-Identifier: MIT
// What importing debug information tells the user.
#pragma once

#include "base/message_text.h"

namespace brevant::symbols {

inline constexpr base::MessageText kInconsistentFormat{
    "symbols.inconsistent-format", base::Severity::Error,
    "File format is possibly inconsistant.  Please\nuse Config menu to configure the compiler",
    base::captions::kError, base::Icon::Error};

inline constexpr const base::MessageText* kAllMessages[] = {&kInconsistentFormat};

}  // namespace brevant::symbols
