// SPDX-License-Identifier: MIT
// The commands that engine code itself sends through the workspace. Front ends may know more.
#pragma once

namespace brevant::debugger {

inline constexpr int kCommandReset = 340;
inline constexpr int kCommandTrace = 345;

}  // namespace brevant::debugger
