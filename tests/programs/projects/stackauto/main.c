// SPDX-License-Identifier: MIT
// Everything that a function has lies on the stack: parameters and locals of every width, arrays,
// structures and pointers to them, through calls that nest and recur. Nothing here needs a routine
// of the C library, which was not compiled for such a stack.
#include "shapes.h"
#include "types.h"

s16 weight_sum;       // 10 + 20 + 30
u8 list_count;        // 3
s32 spread_result;    // see spread
u16 moves;            // 2^4 - 1 = 15
s16 sorted_middle;    // of 30, -5, 12, 7, -90: 7
s16 area_sum;         // 12 + 6
char found_label[4];  // "two"
u8 deepest;           // 5
u8 finished;

struct item items[3];
struct box box;

static void link_items(void) {
  u8 i;
  for (i = 0; i < 3; i++) {
    struct item* item = &items[i];
    item->id = i + 1;
    item->weight = (u8)(i + 1) * (u8)10;
    item->at.x = i;
    item->at.y = -(s16)i;
    item->next = i < 2 ? &items[i + 1] : 0;
  }
}

static s16 weight_of(const struct item* list) {
  s16 rest;
  if (list == 0) {
    return 0;
  }
  rest = weight_of(list->next);
  return list->weight + rest;
}

static u8 length_of(const struct item* list) {
  u8 length = 0;
  while (list != 0) {
    length++;
    list = list->next;
  }
  return length;
}

// Adds the depth to the byte, ten times as much to the word and a million to the long.
static s32 spread(u8 depth, s8 byte, u16 word, s32 wide, const char* text) {
  s32 deeper;
  s16 local_word = (s16)word + 1;
  char first = *text;
  if (depth > deepest) {
    deepest = depth;
  }
  if (first == '\0') {
    return wide + local_word + byte;
  }
  deeper = spread(depth + 1, byte - 10, word + 100, wide + 1000000, text + 1);
  return deeper + first;
}

static void hanoi(u8 discs, char from, char to, char spare) {
  if (discs == 0) {
    return;
  }
  hanoi(discs - 1, from, spare, to);
  moves++;
  hanoi(discs - 1, spare, to, from);
}

static s16 middle_of_sorted(void) {
  s16 values[5];
  u8 i, j;
  s16 key;
  values[0] = 30;
  values[1] = -5;
  values[2] = 12;
  values[3] = 7;
  values[4] = -90;
  for (i = 1; i < 5; i++) {
    key = values[i];
    j = i;
    while (j > 0 && values[j - 1] > key) {
      values[j] = values[j - 1];
      j--;
    }
    values[j] = key;
  }
  return values[2];
}

static const struct item* find(const struct item* list, u8 id) {
  if (list == 0 || list->id == id) {
    return list;
  }
  return find(list->next, id);
}

static s16 measure(struct box* box) {
  struct box inner;
  struct point* corner = &inner.corners[1];
  s16 outer_area = box_area(box);
  inner.corners[0].x = 1;
  inner.corners[0].y = 1;
  corner->x = box->corners[1].x;
  corner->y = box->corners[1].y;
  inner.style.colour.red = box->style.colour.red >> 1;
  inner.label[0] = 'i';
  inner.label[1] = '\0';
  return outer_area + box_area(&inner);
}

void done(void) {
  finished = 1;
  for (;;) {
  }
}

void main(void) {
  const struct item* item;
  CONFIG1 = 0x01;
  finished = 0;
  deepest = 0;
  moves = 0;
  link_items();
  weight_sum = weight_of(items);
  list_count = length_of(&items[0]);
  spread_result = spread(1, 5, 1000, -2000000, "abcd");
  hanoi(4, 'a', 'c', 'b');
  sorted_middle = middle_of_sorted();
  item = find(items, 2);
  label_copy(found_label, item->id == 2 ? "two" : "?");
  box_set(&box, 4, 3);
  area_sum = measure(&box);
  item = find(items, 9);
  done();
}
