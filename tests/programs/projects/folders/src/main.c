// SPDX-License-Identifier: MIT
// A program whose sources lie in folders: names that two files share, code in headers, a handler
// that interrupts, calls four deep and calls of the C library.
#include "clamp.h"
#include "io.h"

char label[8];    // "port A"
u8 label_length;  // 6
s16 average;      // (-9 + 40 + 150 + 7) / 4 = 47
s16 limited;      // 20
s16 negative;     // -1000 / 7 = -142, no less than -60
u8 waited;        // 3, then 5
u8 finished;

static u16 count;  // calls of measure_all and its rounds
static s16 last;

static void measure_all(u8 rounds) {
  u8 round;
  for (round = 0; round < rounds; round++) {
    last = io_measure(round);
    count++;
  }
  count += 100;
}

static s16 divide(s16 dividend, s16 divisor) {
  s16 quotient = dividend / divisor;
  return clamp(quotient, 60);
}

void done(void) {
  finished = 1;
  for (;;) {
  }
}

void main(void) {
  CONFIG1 = 0x01;
  count = 0;
  port_reads = 0;
  finished = 0;
  io_open();
  clock_start();
  label_length = port_describe(label);
  measure_all(4);
  waited = clock_wait(3);
  measure_all(2);
  average = io_average();
  limited = clamp(average, 20);
  negative = divide(-1000, 7);
  waited = clock_wait(2);
  done();
}
