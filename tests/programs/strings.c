// SPDX-License-Identifier: MIT
// Texts and blocks of memory through pointers and the C library.
#include <string.h>
#include "gp32.h"

char greeting[16];  // "hello, target"
char backwards[8];  // "tegrat"
u8 length;          // 13
u8 copied[8];       // 2 3 4 5 6 7 8 0
u8 filled[4];       // $5A each
s8 order;           // strcmp("abc", "abd") is below 0: -1
u8 found;           // "target" starts at 7
u16 checksum;       // of greeting's characters

static void reverse(char* to, const char* from) {
  const char* end = from;
  while (*end != '\0') end++;
  while (end != from) *to++ = *--end;
  *to = '\0';
}

void done(void) {
  for (;;) {
  }
}

void main(void) {
  static const u8 source[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  char* p;

  COP_OFF();
  strcpy(greeting, "hello, ");
  strcat(greeting, "target");
  length = (u8)strlen(greeting);
  reverse(backwards, greeting + 7);
  memset(copied, 0, sizeof copied);
  memcpy(copied, source + 1, 7);
  memset(filled, 0x5A, sizeof filled);
  order = strcmp("abc", "abd") < 0 ? -1 : 1;
  found = (u8)(strchr(greeting, 't') - greeting);
  checksum = 0;
  for (p = greeting; *p != '\0'; p++) {
    checksum += (u8)*p;
  }
  done();
}
