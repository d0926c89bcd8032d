// SPDX-License-Identifier: MIT
// Names that are equal in their first 32 characters and longer than that.
#include "gp32.h"

u8 a_counter_with_a_name_that_is_longer_than_any_map_shows_it_first;   // 11
u8 a_counter_with_a_name_that_is_longer_than_any_map_shows_it_second;  // 22
u16 sum_of_both;                                                       // 33

static void a_function_with_a_name_that_is_longer_than_any_map_shows_first(void) {
  a_counter_with_a_name_that_is_longer_than_any_map_shows_it_first += 11;
}

static void a_function_with_a_name_that_is_longer_than_any_map_shows_second(void) {
  a_counter_with_a_name_that_is_longer_than_any_map_shows_it_second += 22;
}

void done(void) {
  for (;;) {
  }
}

void main(void) {
  COP_OFF();
  a_counter_with_a_name_that_is_longer_than_any_map_shows_it_first = 0;
  a_counter_with_a_name_that_is_longer_than_any_map_shows_it_second = 0;
  a_function_with_a_name_that_is_longer_than_any_map_shows_first();
  a_function_with_a_name_that_is_longer_than_any_map_shows_second();
  sum_of_both = (u16)a_counter_with_a_name_that_is_longer_than_any_map_shows_it_first +
                a_counter_with_a_name_that_is_longer_than_any_map_shows_it_second;
  done();
}
