// SPDX-License-Identifier: MIT
// The registers of the MC68HC908GP32 that the test programs use.
#ifndef GP32_H
#define GP32_H

typedef unsigned char u8;
typedef signed char s8;
typedef unsigned int u16;
typedef int s16;
typedef unsigned long u32;
typedef long s32;

volatile __data __at(0x00) u8 PTA;
volatile __data __at(0x04) u8 DDRA;
volatile __data __at(0x1F) u8 CONFIG1;
volatile __data __at(0x20) u8 T1SC;
volatile __data __at(0x23) u8 T1MODH;
volatile __data __at(0x24) u8 T1MODL;

#define COP_OFF() (CONFIG1 = 0x01)

#endif
