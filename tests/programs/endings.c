// SPDX-License-Identifier: MIT
// Functions that end in uncommon ways, strings at a module's end, and a type of eight bytes.
#include "gp32.h"

unsigned long long ticks[2];
static const char *volatile text;

static void naked(void) __naked
{
  __asm
    bra _one_line
  __endasm;
}
void one_line(void) { ticks[0]++; text = "one"; }
void forever(void)
{
  text = "two";
  for (;;) PTA = 1;
}
void main(void)
{
  naked();
  text = "three";
  forever();
}
void last(void) __naked
{
  __asm
    jmp _main
  __endasm;
}
