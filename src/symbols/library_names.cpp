// SPDX-License-Identifier: MIT
#include "symbols/library_names.h"

#include <algorithm>
#include <array>
#include <span>

namespace brevant::symbols {
namespace {

// clang-format off
// The names without the character that the compiler places in front.
constexpr std::array<std::string_view, 82> kImagecraftNames{
    "_HC12Setup", "_NewHeap", "_va_start", "abort", "abs", "atan", "atof", "atoi", "atol",
    "calloc", "cos", "degree_to_radian", "exit", "exp", "exp10", "fabs", "fprintf", "free",
    "getchar", "int_to_int32", "int32_add", "int32_add_int", "int32_add_uint", "int32_sub",
    "int32_sub_int", "int32_sub_uint", "isalnum", "isalpha", "iscntrl", "isdigit", "isgraph",
    "islower", "isprint", "ispunct", "isspace", "isupper", "isxdigit", "log", "log10", "longjmp",
    "malloc", "memchr", "memcmp", "memcpy", "memmove", "memset", "modf", "pow", "printf",
    "putchar", "puts", "radian_to_degree", "rand", "realloc", "setbaud", "setjmp", "sin",
    "sprintf", "sqrt", "srand", "strcat", "strchr", "strcmp", "strcoll", "strcpy", "strcspn",
    "strlen", "strncat", "strncmp", "strncpy", "strpbrk", "strrchr", "strspn", "strstr", "strtol",
    "strtoul", "tan", "tolower", "toupper", "uint_to_int32", "uint32_dec", "uint32_inc"};

constexpr std::array<std::string_view, 205> kIntrolNames{
    "__acos", "__asin", "__assert", "__atan", "__brk", "__cos", "__cosh", "__cvtflasc",
    "__doopen", "__exp", "__fabs", "__ifmt", "__io_close", "__io_ioctl", "__io_open", "__io_read",
    "__io_write", "__ioctl", "__log", "__log10", "__ofmt", "__sbrk", "__sin", "__sinh", "__sqrt",
    "__tan", "__tanh", "__tobase", "_ATTACH", "_cx_exit", "_cx_interrupt_exit", "_cx_priority",
    "_cx_slice", "_VECTOR", "abort", "abs", "acos", "asctime", "asin", "atan", "atan2", "atexit",
    "atof", "atoi", "atol", "bsearch", "calloc", "ceil", "clearerr", "clock", "cos", "cosh",
    "ctime", "cx_addmemory", "cx_alloc", "cx_BQflags", "cx_deleteBQ", "cx_deleteQ", "cx_event",
    "cx_free", "cx_init", "cx_insertBQ", "cx_insertQ", "cx_lock_nw", "cx_lock_w", "cx_newBQ",
    "cx_newQ", "cx_Qflags", "cx_removeBQ", "cx_removeQ", "cx_start", "cx_suspend", "cx_TOend",
    "cx_TOms", "cx_TOms_periodic", "cx_TOsec", "cx_TOsec_periodic", "cx_unlock", "cx_unlock_wait",
    "cx_unstackBQ", "cx_unstackQ", "cx_wait", "difftime", "div", "exit", "exp", "fabs", "fclose",
    "feof", "ferror", "fflush", "fgetc", "fgetpos", "fgets", "floor", "fmod", "fopen", "fprintf",
    "fputc", "fputs", "fread", "free", "freopen", "frexp", "fscanf", "fseek", "fsetpos", "ftell",
    "fwrite", "getc", "getchar", "getenv", "gets", "gmtime", "isalnum", "isalpha", "isascii",
    "iscntrl", "isdigit", "isgraph", "islower", "isprint", "ispunct", "isspace", "isupper",
    "isxdigit", "labs", "ldexp", "ldiv", "localconv", "localtime", "log", "log10", "longjmp",
    "malloc", "mblen", "mbstowcs", "mbtowc", "memchr", "memcmp", "memcpy", "memmove", "memset",
    "mktime", "modf", "perror", "pow", "printf", "putc", "putchar", "puts", "qsort", "raise",
    "rand", "realloc", "remove", "rename", "rewind", "scanf", "setbuf", "setjmp", "setlocale",
    "setvbuf", "signal", "sin", "sinh", "sprintf", "sqrt", "srand", "sscanf", "strcat", "strchr",
    "strcmp", "strcoll", "strcpy", "strcspn", "strerror", "strftime", "strlen", "strncat",
    "strncmp", "strncpy", "strpbrk", "strrchr", "strspn", "strstr", "strtod", "strtok", "strtol",
    "strtoul", "strxfrm", "system", "tan", "tanh", "time", "tmpfile", "tmpnam", "tolower",
    "toupper", "ungetc", "vfprintf", "vprintf", "vsprintf", "wcstombs", "wctomb"};

// clang-format on

bool Contains(std::span<const std::string_view> names, std::string_view name) {
  return std::ranges::find(names, name) != names.end();
}

}  // namespace

bool IsLibraryName(std::string_view name, ToolChain tool_chain) {
  if (name.empty()) return false;
  switch (tool_chain) {
    case ToolChain::Imagecraft:
      return Contains(kImagecraftNames, name.substr(1));
    case ToolChain::Introl:
      return Contains(kIntrolNames, name);
    default:
      return true;
  }
}

bool IsLibraryCall(base::Address address, const DebugInfo& info) {
  const auto name = info.SymbolTable.FindSymbolName(address);
  if (!name) return false;
  const bool lines_tell = info.tool_chain == ToolChain::Sdcc || !info.functions.empty();
  if (lines_tell && info.LineTable.HasLineAt(address)) return false;
  return IsLibraryName(*name, info.tool_chain);
}

}  // namespace brevant::symbols
