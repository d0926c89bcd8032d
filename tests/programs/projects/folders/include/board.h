// SPDX-License-Identifier: MIT
// What the program needs of the board, and integers that are as wide on the host. There nothing
// interrupts: IDLE() calls the handler where the target would wait for it.
#ifndef BOARD_H
#define BOARD_H

typedef unsigned char u8;
typedef signed char s8;

#ifdef __SDCC
typedef unsigned int u16;
typedef int s16;
typedef unsigned long u32;

volatile __data __at(0x00) u8 PTA;
volatile __data __at(0x1F) u8 CONFIG1;
volatile __data __at(0x20) u8 T1SC;
volatile __data __at(0x23) u8 T1MODH;
volatile __data __at(0x24) u8 T1MODL;

#define HANDLER(number) __interrupt(number)
#define INTERRUPTS_ON() __asm__("cli")
#define INTERRUPTS_OFF() __asm__("sei")
#define IDLE()
#else
typedef unsigned short u16;
typedef short s16;
typedef unsigned int u32;

static volatile u8 PTA, CONFIG1, T1SC, T1MODH, T1MODL;

#define HANDLER(number)
#define INTERRUPTS_ON()
#define INTERRUPTS_OFF()
#define IDLE() clock_overflow()
#endif

void clock_overflow(void) HANDLER(6);

#endif
