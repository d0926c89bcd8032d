// SPDX-License-Identifier: MIT
// Calls through pointers to functions, alone and in a table. The compiler makes such a call with
// RTS; one function here does it with JSR ,X.
#include "gp32.h"

s16 value;           // ((5 + 3) * 4 - 7) = 25
u8 calls;            // 6
u8 trace[6];         // which was called, in order: 1 2 3 1 1 2
void (*hook)(void);  // count
u8 indexed;          // 3, counted by a call with JSR ,X

static void count(void) {
  calls++;
}

static void note(u8 which) {
  trace[calls] = which;
  hook();
}

static s16 plus_three(s16 v) {
  note(1);
  return v + 3;
}

static s16 times_four(s16 v) {
  note(2);
  return v * 4;
}

static s16 minus_seven(s16 v) {
  note(3);
  return v - 7;
}

static void three_more(void) {
  indexed += 3;
}

// The pointer's high byte arrives in X, the low one in A.
static void call_indexed(void (*function)(void)) __naked {
  (void)function;
  // clang-format off
  __asm
    pshx
    pulh
    tax
    jsr ,x
    rts
  __endasm;
  // clang-format on
}

typedef s16 (*operation)(s16);
static const operation operations[3] = {plus_three, times_four, minus_seven};

void done(void) {
  for (;;) {
  }
}

void main(void) {
  operation single;
  u8 i;

  COP_OFF();
  calls = 0;
  hook = count;
  value = 5;
  for (i = 0; i < 3; i++) {
    value = operations[i](value);
  }
  single = plus_three;
  single(0);
  single(1);
  single = times_four;
  single(2);
  indexed = 0;
  call_indexed(three_more);
  done();
}
