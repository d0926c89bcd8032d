// SPDX-License-Identifier: MIT
// Lines on which much happens: loops, calls and several statements on one line, early returns,
// branches; and variables of every kind that C has.
#include "types.h"

enum colour { RED, GREEN = 5, BLUE };

struct flags {
  u8 low : 3;
  u8 middle : 4;
  u8 top : 1;
};

struct wide_flags {
  u16 first : 5;
  u16 second : 9;
};

u16 total;      // see sum_to_nine and main
u16 countdown;  // 0
u16 spins;      // 20000
u8 first, second, third;
s8 negative_char;    // -5
s16 negative_int;    // -1234
s32 negative_long;   // -100000
u32 big;             // 4000000000
enum colour colour;  // BLUE: 6
_Bool ready;         // 1
struct flags flags;
struct wide_flags wide_flags;
char text[12];     // "hello"
const char* name;  // "world"
char* tail;        // "llo", in text
s16 table[4];      // 100, 201, 305, 400
s16* entry;        // into table
u8 grid[2][3];     // 1 to 6
s16 (*operation)(s16);
s16 operated;  // 14, then 56
u8 path;       // 12: which ways weekday took
u8 finished;

static u8 calls;  // of twice

static u8 next_number(void) {
  static u8 number = 10;
  static u16 times = 100;
  number += 3;
  times++;
  return number;
}

static s16 twice(s16 value) {
  calls++;
  return value + value;
}

static s16 seven_times(s16 value) {
  return (value << 3) - value;
}

static u8 is_big(u16 value) {
  if (value > 500) return 1;
  return 0;
}

static s16 sign(s16 value) {
  if (value < 0) {
    return -1;
  }
  if (value == 0) {
    return 0;
  }
  return 1;
}

static void nothing(void) {}

static u8 weekday(u8 day) {
  u8 kind;
  switch (day) {
    case 0:
      kind = 1;
      break;
    case 1:
    case 2:
      path += 10;
      // on to the next case
    case 3:
      path++;
      kind = 3;
      break;
    default:
      return 99;
  }
  return kind;
}

static u16 sum_to_nine(void) {
  u16 sum = 0;
  u8 i;
  for (i = 0; i < 10; i++) sum += i;
  return sum;
}

static u16 powers(u8 limit) {
  u16 power = 1;
  u8 i = 0;
  do {
    power = power << 1;
    i++;
    if (i == 2) continue;
    if (power > 1000) break;
  } while (i < limit);
  return power;
}

static void set_text(char* to, const char* from) {
  // clang-format off
  while ((*to++ = *from++) != '\0');
  // clang-format on
}

static void loops(void) {
  u8 row, column;
  u8 cell = 1;
  countdown = 300;
  while (countdown != 0) countdown--;
  // clang-format off
  for (spins = 0; spins < 20000; spins++);
  // clang-format on
  for (row = 0; row < 2; row++) {
    for (column = 0; column < 3; column++) {
      grid[row][column] = cell++;
    }
  }
  // clang-format off
  first = 1; second = first + 1; third = second + 1;
  // clang-format on
  total += third;
}

static void values(void) {
  u8 i;
  negative_char = -5;
  negative_int = -1234;
  negative_long = -100000;
  big = 4000000000;
  colour = BLUE;
  ready = 1;
  // clang-format off
  flags.low = 5; flags.middle = 9; flags.top = 1;
  // clang-format on
  wide_flags.first = 17;
  wide_flags.second = 300;
  set_text(text, "hello");
  name = "world";
  tail = text + 2;
  for (i = 0; i < 4; i++) {
    table[i] = (i + 1) * 100;
  }
  entry = &table[1];
  *entry += 1;
  entry++;
  *entry += 5;
}

static void calls_on_lines(void) {
  s16 both;
  both = twice(3) + twice(4);
  total += both;
  if (is_big(total) == 0) {
    total += 1000;
  }
  while (is_big(total)) total -= 300;
  operation = twice;
  operated = operation(7);
  operation = seven_times;
  operated = operation(8);
  // clang-format off
  nothing(); nothing();
  // clang-format on
  total = sign(-9) + sign(0) + sign(negative_int) + 2;
  first = next_number();
  second = next_number();
}

static void choices(void) {
  path = 0;
  first = weekday(0);
  second = weekday(1);
  third = weekday(3);
  third = weekday(7);
}

void done(void) {
  finished = 1;
  for (;;) {
  }
}

void main(void) {
  CONFIG1 = 0x01;
  finished = 0;
  calls = 0;
  total = sum_to_nine();
  loops();
  values();
  calls_on_lines();
  choices();
  total = powers(12);
  total = ready ? powers(3) : 0;
  done();
}
