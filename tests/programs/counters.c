// SPDX-License-Identifier: MIT
// Loops of every kind over 8, 16 and 32 bits.
#include "gp32.h"

u8 wrapped;  // 300 modulo 256
u16 sum;     // 1 + 2 + ... + 500 modulo 65536
u32 total;   // 100 * 70000
s16 down;    // from 10 to -10
u8 outer_times_inner;

void done(void) {
  for (;;) {
  }
}

void main(void) {
  u16 i;
  u8 a, b;

  COP_OFF();
  wrapped = 0;
  for (i = 0; i < 300; i++) {
    wrapped++;
  }
  sum = 0;
  i = 500;
  while (i != 0) {
    sum += i;
    i--;
  }
  total = 0;
  for (a = 0; a < 100; a++) {
    total += 70000;
  }
  down = 10;
  do {
    down--;
  } while (down > -10);
  outer_times_inner = 0;
  for (a = 0; a < 7; a++) {
    for (b = 0; b < 9; b++) {
      outer_times_inner++;
    }
  }
  done();
}
