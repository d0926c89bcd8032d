// SPDX-License-Identifier: MIT
// Two modules, each with a static function "scale" and a static variable "factor" of its own.
#include "gp32.h"

u16 modules_result;  // 10 * 3 = 30
u16 other_result;    // 10 * 7 + 1 = 71
u8 modules_factor;   // 3
extern u16 other_scaled(u16 v);

static u8 factor;

static u16 scale(u16 v) {
  return v * factor;
}

void done(void) {
  for (;;) {
  }
}

void main(void) {
  COP_OFF();
  factor = 3;
  modules_result = scale(10);
  other_result = other_scaled(10);
  modules_factor = factor;
  done();
}
