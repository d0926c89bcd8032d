// SPDX-License-Identifier: MIT
// Both files named io.c: the measuring one in src, the port's in drivers.
#ifndef IO_H
#define IO_H

#include "board.h"

extern u8 port_reads;

void io_open(void);
s16 io_measure(u8 channel);
s16 io_average(void);

s16 port_read(u8 channel);
u8 port_describe(char* to);

void clock_start(void);
u8 clock_wait(u8 ticks);

#endif
