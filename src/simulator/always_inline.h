// SPDX-License-Identifier: MIT
// For the few functions that must dissolve into the execution loop: one call that remains keeps the
// simulated registers in memory, at half the speed.
#pragma once

#define BREVANT_ALWAYS_INLINE [[gnu::always_inline]] inline
