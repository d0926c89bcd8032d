// SPDX-License-Identifier: MIT
// A filter whose samples come from a file of the host and whose results go to another: each result
// is the mean of the last four samples. It runs in RAM, from $0100 on, and never ends.
//
// Load fileio.s19. Bind a file of numbers such as fileio.txt to the instruction at input_slot, a
// name for the results to the one at output_slot, then start file I/O. Without file I/O the slots
// do no harm: every sample is 0.

typedef unsigned char u8;
typedef unsigned int u16;

#define TAPS 4

__data u16 samples[TAPS];
__data u8 oldest;
__data u16 sum;

u16 read_number(void) __naked;
void write_number(u16 number) __naked;

// There is no start-up code before this function, since it must fit into RAM with the rest: the
// stack and every variable get their first value here.
void start(void) {
  __asm__("ldhx #0x0100");  // the stack grows downwards from $00FF
  __asm__("txs");
  __asm__("cli");  // the debugger's stop arrives as an interrupt
  sum = 0;
  for (oldest = 0; oldest < TAPS; oldest++) samples[oldest] = 0;
  oldest = 0;
  for (;;) {
    sum -= samples[oldest];
    samples[oldest] = read_number();
    sum += samples[oldest];
    oldest = (oldest + 1) & (TAPS - 1);
    write_number(sum / TAPS);
  }
}

// A number of the file is in X:A behind the slot. Else the jump leads to where 0 is returned.
u16 read_number(void) __naked {
  __asm
    ldhx #no_file
    .globl _input_slot
_input_slot:
    jmp ,x
    nop
    rts
no_file:
    clrx
    clra
    rts
  __endasm;
}

// The number is in X:A. INC would change the byte at H:X: that is made one of flash, which does not
// take it.
void write_number(u16 number) __naked {
  (void)number;
  __asm
    pshx
    ldhx #0xe000
    pulx
    .globl _output_slot
_output_slot:
    inc ,x
    nop
    rts
  __endasm;
}
