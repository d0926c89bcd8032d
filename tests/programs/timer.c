// SPDX-License-Identifier: MIT
// Timer 1 overflows every 1000 bus cycles and interrupts; after 20 of them the program ends.
#include "gp32.h"

volatile u8 overflows;  // 20
volatile u8 pattern;    // $A5 turned round 20 times: $5A
u8 finished;            // 1

void timer_overflow(void) __interrupt(6) {
  T1SC;           // the flag is cleared by reading it while it is set ...
  T1SC &= ~0x80;  // ... and writing 0
  overflows++;
  pattern = (u8)(pattern << 1) | (pattern >> 7);
  if (overflows == 20) T1SC = 0x20;
}

void done(void) {
  finished = 1;
  for (;;) {
  }
}

void main(void) {
  COP_OFF();
  overflows = 0;
  pattern = 0xA5;
  finished = 0;
  T1SC = 0x30;  // stopped, counter cleared
  T1MODH = 999 >> 8;
  T1MODL = 999 & 0xFF;
  T1SC = 0x40;  // overflow interrupt, bus clock
  __asm__("cli");
  while (overflows < 20) {
  }
  __asm__("sei");
  done();
}
