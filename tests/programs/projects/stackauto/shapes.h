// SPDX-License-Identifier: MIT
// Structures in structures.
#ifndef SHAPES_H
#define SHAPES_H

#include "types.h"

struct point {
  s16 x;
  s16 y;
};

struct item {
  u8 id;
  struct point at;
  s16 weight;
  struct item* next;
};

struct colour {
  u8 red;
  u8 green;
};

struct box {
  struct point corners[2];
  char label[6];
  struct {
    struct colour colour;
    s8 depth;
  } style;
};

void label_copy(char* to, const char* from);
void box_set(struct box* box, s16 width, s16 height);
s16 box_area(const struct box* box);

#endif
