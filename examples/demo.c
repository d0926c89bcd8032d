// SPDX-License-Identifier: MIT
// A first program to watch. It needs no flash: it runs in the RAM of the MC68HC908GP32, from $0100
// on, and never ends.
//
//   counter    counts the rounds
//   fibonacci  the latest number of the series; it starts again before 16 bits are full
//   port A     one lit bit walks to and fro
//
// Load demo.s19, choose Go, stop, and look at the data window from $0080 on. Then step into the
// functions that the loop in start() calls.

typedef unsigned char u8;
typedef unsigned int u16;

volatile __data __at(0x00) u8 PTA;   // port A
volatile __data __at(0x04) u8 DDRA;  // its directions: 1 is an output

__data u16 counter;
__data u16 fibonacci;
__data u16 previous;  // the number of the series before it
__data u8 light;
__data u8 leftwards;

void count(void);
void next_fibonacci(void);
void move_light(void);

// There is no start-up code before this function, since it must fit into RAM with the rest: the
// stack and every variable get their first value here.
void start(void) {
  __asm__("ldhx #0x0100");  // the stack grows downwards from $00FF
  __asm__("txs");
  __asm__("cli");  // the debugger's stop arrives as an interrupt
  PTA = 0x00;
  DDRA = 0xFF;
  light = 0x01;
  leftwards = 1;
  counter = 0;
  previous = 0;
  fibonacci = 1;
  for (;;) {
    count();
    next_fibonacci();
    move_light();  // at $0120: a good place for a breakpoint
  }
}

void count(void) {
  counter++;
}

void next_fibonacci(void) {
  u16 sum = fibonacci + previous;
  previous = fibonacci;
  fibonacci = sum;
  if (fibonacci > 28657) {
    fibonacci = 1;
    previous = 0;
  }
}

void move_light(void) {
  PTA = light;
  if (leftwards) {
    light <<= 1;
    if (light == 0x80) leftwards = 0;
  } else {
    light >>= 1;
    if (light == 0x01) leftwards = 1;
  }
}
