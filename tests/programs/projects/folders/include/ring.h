// SPDX-License-Identifier: MIT
// A ring of four samples. Only one module includes this.
#ifndef RING_H
#define RING_H

#include "board.h"

struct ring {
  s16 slots[4];
  u8 next;
};

static inline u8 ring_after(u8 index) {
  return (u8)(index + 1) & 3;
}

void ring_put(struct ring* ring, s16 sample) {
  ring->slots[ring->next] = sample;
  ring->next = ring_after(ring->next);
}

#endif
