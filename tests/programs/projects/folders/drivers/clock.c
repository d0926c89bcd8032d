// SPDX-License-Identifier: MIT
// Timer 1 overflows every 1000 bus cycles and interrupts.
#include "io.h"

volatile u8 overflows;  // 3, then 2 more
u16 weighted;           // 1 + 2 + 3 + 4 + 5

static volatile u8 count;  // ticks still to wait for; src/main.c has a count of its own

// Called by the handler alone: the tick is added as often as ticks came before it.
static void weigh(void) {
  u8 i;
  for (i = 0; i < overflows; i++) {
    weighted++;
  }
}

void clock_overflow(void) HANDLER(6) {
  T1SC;           // the flag is cleared by reading it while it is set ...
  T1SC &= ~0x80;  // ... and writing 0
  overflows++;
  weigh();
  count--;
  if (count == 0) {
    T1SC = 0x20;
  }
}

void clock_start(void) {
  overflows = 0;
  weighted = 0;
  T1MODH = 999 >> 8;
  T1MODL = 999 & 0xFF;
}

u8 clock_wait(u8 ticks) {
  count = ticks;
  T1SC = 0x30;  // stopped, counter cleared
  T1SC = 0x40;  // overflow interrupt, bus clock
  INTERRUPTS_ON();
  while (count != 0) IDLE();
  INTERRUPTS_OFF();
  return overflows;
}
