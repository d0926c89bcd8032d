// SPDX-License-Identifier: MIT
// Integers that are as wide on the host.
#ifndef TYPES_H
#define TYPES_H

typedef unsigned char u8;
typedef signed char s8;

#ifdef __SDCC
typedef unsigned int u16;
typedef int s16;
typedef unsigned long u32;
typedef long s32;

volatile __data __at(0x1F) u8 CONFIG1;
#else
typedef unsigned short u16;
typedef short s16;
typedef unsigned int u32;
typedef int s32;

static volatile u8 CONFIG1;
#endif

#endif
