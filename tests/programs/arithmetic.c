// SPDX-License-Identifier: MIT
// Multiplication, division, shifts and signs in 8, 16 and 32 bits.
#include "gp32.h"

u16 product;          // 1234 * 56 modulo 65536 = 69104 - 65536 = 3568
s16 signed_product;   // -123 * 45 = -5535
u16 quotient;         // 50000 / 77 = 649
u16 remainder;        // 50000 % 77 = 27
s16 signed_quotient;  // -1000 / 7 = -142
s16 signed_rest;      // -1000 % 7 = -6
u32 wide_product;     // 54321 * 12345 = 670592745
u32 wide_quotient;    // 670592745 / 1000 = 670592
u16 left;             // $1234 << 5 = $4680
u16 right;            // $F234 >> 3 = $1E46
s16 signed_right;     // -100 >> 2 = -25
u8 average;           // (200 + 100) / 2 = 150
u8 below;             // -1 < 1 in signs: 1
u8 unsigned_below;    // $FFFF < 1: 0
u16 square_root;      // of 40000: 200

static u16 isqrt(u16 n) {
  u16 root = 0;
  u16 bit = 0x4000;
  while (bit > n) bit >>= 2;
  while (bit != 0) {
    if (n >= root + bit) {
      n -= root + bit;
      root = (root >> 1) + bit;
    } else {
      root >>= 1;
    }
    bit >>= 2;
  }
  return root;
}

void done(void) {
  for (;;) {
  }
}

// The operands come from memory, so that nothing is computed by the compiler.
volatile u16 a16;
volatile u16 b16;
volatile s16 sa16;
volatile s16 sb16;
volatile u8 a8;
volatile u8 b8;

void main(void) {
  COP_OFF();
  a16 = 1234, b16 = 56;
  product = a16 * b16;
  a16 = 50000, b16 = 77;
  quotient = a16 / b16;
  remainder = a16 % b16;
  sa16 = -123, sb16 = 45;
  signed_product = sa16 * sb16;
  sa16 = -1000, sb16 = 7;
  signed_quotient = sa16 / sb16;
  signed_rest = sa16 % sb16;
  a16 = 54321, b16 = 12345;
  wide_product = (u32)a16 * b16;
  a16 = 1000;
  wide_quotient = wide_product / a16;
  a16 = 0x1234;
  left = a16 << 5;
  a16 = 0xF234;
  right = a16 >> 3;
  sa16 = -100;
  signed_right = sa16 >> 2;
  a8 = 200, b8 = 100;
  average = (u8)(((u16)a8 + b8) / 2);
  sa16 = -1, sb16 = 1;
  below = sa16 < sb16;
  a16 = 0xFFFF, b16 = 1;
  unsigned_below = a16 < b16;
  square_root = isqrt(40000);
  done();
}
