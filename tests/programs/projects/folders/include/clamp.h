// SPDX-License-Identifier: MIT
// Code in a header: two modules have it, each its own copy.
#ifndef CLAMP_H
#define CLAMP_H

#include "board.h"

static s16 clamp(s16 value, s16 limit) {
  if (value > limit) {
    return limit;
  }
  if (value < -limit) {
    return -limit;
  }
  return value;
}

#endif
