// SPDX-License-Identifier: MIT
// Structures, unions, bit-fields and arrays of them.
#include "gp32.h"

struct point {
  u8 x;
  s16 y;
};

struct line {
  struct point from;
  struct point to;
};

union word {
  u16 value;
  u8 bytes[2];
};

struct flags {
  u8 low : 3;
  u8 middle : 4;
  u8 top : 1;
};

struct point points[4];  // x = 1, 4, 9, 16; y = -1, -2, -3, -4
struct line segment;     // points[0] to points[3]
struct flags flags;      // 5, 9, 1: $CD
union word word;         // $12 $34, high byte first
u8 values[8];            // sorted
s16 grid[2][3];          // 10 * row - column
s16 sum_y;               // -10
u16 size_of_line;        // 6

static void sort(u8* v, u8 n) {
  u8 i, j;
  for (i = 1; i < n; i++) {
    u8 key = v[i];
    for (j = i; j > 0 && v[j - 1] > key; j--) {
      v[j] = v[j - 1];
    }
    v[j] = key;
  }
}

void done(void) {
  for (;;) {
  }
}

void main(void) {
  static const u8 unsorted[8] = {42, 7, 255, 0, 99, 7, 128, 1};
  u8 i, j;

  COP_OFF();
  sum_y = 0;
  for (i = 0; i < 4; i++) {
    points[i].x = (i + 1) * (i + 1);
    points[i].y = -(s16)(i + 1);
    sum_y += points[i].y;
  }
  segment.from = points[0];
  segment.to = points[3];
  size_of_line = sizeof(struct line);
  flags.low = 5;
  flags.middle = 9;
  flags.top = 1;
  word.bytes[0] = 0x12;
  word.bytes[1] = 0x34;
  for (i = 0; i < 8; i++) {
    values[i] = unsorted[i];
  }
  sort(values, 8);
  for (i = 0; i < 2; i++) {
    for (j = 0; j < 3; j++) {
      grid[i][j] = 10 * i - j;
    }
  }
  done();
}
