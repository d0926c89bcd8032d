// SPDX-License-Identifier: MIT
// The texts that importing debug information shows.
#pragma once

namespace brevant::symbols {

inline constexpr const char* kErrorCaption = "Error Message";
inline constexpr const char* kInconsistentFormat =
    "File format is possibly inconsistant.  Please\nuse Config menu to configure the compiler";

}  // namespace brevant::symbols
