// SPDX-License-Identifier: MIT
// A program for the flash of the MC68HC908GP32: timer 1 overflows eight times a second, and each
// time the main loop shows the next of three patterns on port A.
//
// Program blink.s19 into the flash, reset, choose Go. A breakpoint in show() comes round with every
// tick of the timer. blink_vectors.asm holds the vectors that C has no words for.

typedef unsigned char u8;
typedef unsigned int u16;

volatile __data __at(0x00) u8 PTA;      // port A
volatile __data __at(0x04) u8 DDRA;     // its directions: 1 is an output
volatile __data __at(0x1F) u8 CONFIG1;  // can be written once after a reset
volatile __data __at(0x20) u8 T1SC;     // timer 1: status and control
volatile __data __at(0x23) u8 T1MODH;   // and the count at which it starts again
volatile __data __at(0x24) u8 T1MODL;

#define TIMER_OVERFLOWN 0x80
#define TIMER_INTERRUPTS 0x40
#define TIMER_STOPPED 0x30  // and its count back to 0
#define BUS_BY_64 0x06

// 2.4576 MHz / 64 / 8
#define TICK 4800

volatile u8 ticks;
u8 shown;   // what port A shows
u16 round;  // how often all patterns were shown

void timer_overflow(void) __interrupt(6) {
  T1SC &= ~TIMER_OVERFLOWN;  // read while set, then written 0: that clears it
  ticks++;
}

// One lit bit, wandering.
static u8 wander(u8 tick) {
  return 1 << (tick & 7);
}

// A bar that fills up.
static u8 fill(u8 tick) {
  return (u8)(0xFF << (tick & 7));
}

// Every second bit, alternating.
static u8 alternate(u8 tick) {
  return tick & 1 ? 0xAA : 0x55;
}

static u8 pattern(u8 tick) {
  switch ((tick >> 3) & 3) {
    case 0:
      return wander(tick);
    case 1:
      return fill(tick);
    default:
      return alternate(tick);
  }
}

static void show(u8 bits) {
  shown = bits;
  PTA = bits;
}

void main(void) {
  u8 seen = 0;

  CONFIG1 = 0x01;  // the watchdog is off
  ticks = 0;
  round = 0;
  DDRA = 0xFF;
  T1SC = TIMER_STOPPED;
  T1MODH = (TICK - 1) >> 8;
  T1MODL = (TICK - 1) & 0xFF;
  T1SC = TIMER_INTERRUPTS | BUS_BY_64;
  __asm__("cli");
  for (;;) {
    if (ticks == seen) continue;
    seen = ticks;
    show(pattern(seen));
    if ((seen & 31) == 0) round++;
  }
}
