// SPDX-License-Identifier: MIT
// The port: a row of values that are read one after the other.
#include "io.h"
#include <string.h>
#include "clamp.h"

u8 port_reads;  // 6

static const s16 readings[6] = {100, -200, 300, 7, -9, 40};
static const char title[] = "port A";
static s16 latest;

static s16 scaled(u8 channel, s16 raw) {
  s16 result = raw;
  if (channel != 0) {
    result = clamp(result, 150);
  }
  latest = result;
  return result;
}

s16 port_read(u8 channel) {
  s16 raw = readings[port_reads];
  port_reads++;
  return scaled(channel, raw);
}

u8 port_describe(char* to) {
  memcpy(to, title, sizeof title);
  return (u8)strlen(to);
}
