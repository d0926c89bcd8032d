// SPDX-License-Identifier: MIT
// Boxes: set through pointers, measured without multiplying.
#include "shapes.h"

static u8 areas;  // 2

void label_copy(char* to, const char* from) {
  while (*from != '\0') {
    *to++ = *from++;
  }
  *to = '\0';
}

static void place(struct point* point, s16 x, s16 y) {
  point->x = x;
  point->y = y;
}

void box_set(struct box* box, s16 width, s16 height) {
  place(&box->corners[0], 0, 0);
  place(&box->corners[1], width, height);
  label_copy(box->label, "outer");
  box->style.colour.red = 200;
  box->style.colour.green = 100;
  box->style.depth = -3;
  areas = 0;
}

s16 box_area(const struct box* box) {
  const struct point* low = &box->corners[0];
  const struct point* high = &box->corners[1];
  s16 area = 0;
  s16 row = low->y;
  while (row < high->y) {
    area += high->x - low->x;
    row++;
  }
  areas++;
  return area;
}
