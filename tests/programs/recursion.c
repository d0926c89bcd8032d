// SPDX-License-Identifier: MIT
// Functions that call themselves and each other; their locals live on the stack.
#include "gp32.h"

u16 fib_12;       // 144
u32 factorial_9;  // 362880
u16 gcd_1071;     // gcd(1071, 462) = 21
u8 is_even_20;    // 1
u8 deepest;       // calls nested in the sum of 1..15
u16 sum_15;       // 120

static u16 fib(u8 n) __reentrant {
  if (n < 2) return n;
  return fib(n - 1) + fib(n - 2);
}

static u32 factorial(u8 n) __reentrant {
  if (n < 2) return 1;
  return n * factorial(n - 1);
}

static u16 gcd(u16 a, u16 b) __reentrant {
  if (b == 0) return a;
  return gcd(b, a % b);
}

u8 is_odd(u8 n) __reentrant;

u8 is_even(u8 n) __reentrant {
  if (n == 0) return 1;
  return is_odd(n - 1);
}

u8 is_odd(u8 n) __reentrant {
  if (n == 0) return 0;
  return is_even(n - 1);
}

static u16 sum_to(u8 n, u8 depth) __reentrant {
  if (depth > deepest) deepest = depth;
  if (n == 0) return 0;
  return n + sum_to(n - 1, depth + 1);
}

void done(void) {
  for (;;) {
  }
}

void main(void) {
  COP_OFF();
  fib_12 = fib(12);
  factorial_9 = factorial(9);
  gcd_1071 = gcd(1071, 462);
  is_even_20 = is_even(20);
  deepest = 0;
  sum_15 = sum_to(15, 1);
  done();
}
