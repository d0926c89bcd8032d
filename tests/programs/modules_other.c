// SPDX-License-Identifier: MIT
// The second module: see modules.c.
#include "gp32.h"

static u8 factor;

static u16 scale(u16 v) {
  u16 result = v * factor;
  return result + 1;
}

u16 other_scaled(u16 v) {
  factor = 7;
  return scale(v);
}
