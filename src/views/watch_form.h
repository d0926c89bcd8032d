// SPDX-License-Identifier: MIT
// The dialog that adds a watched variable or changes one's settings, as a form: what it opens with,
// what a name brings with it, which texts it takes and what comes of them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/user_interface.h"
#include "eval/context.h"
#include "symbols/debug_info.h"
#include "views/watch_table.h"

namespace brevant::views {

// What names mean. Borrowed; without a context while the target cannot be asked.
struct WatchNames {
  const symbols::DebugInfo& info;
  const eval::Context* context = nullptr;
};

struct WatchForm {
  static constexpr const char* kTemplate = "WATCHDLGADD";
  static constexpr int kMostTyped = 16;  // of a name; one that is chosen may be longer
  static constexpr int kMostName = 24;   // an expression may take all the room there is
  static constexpr int kMostAddress = 19, kMostLength = 3;
  enum class Field { Symbol, Address, Length };

  std::string title;
  bool adds = true;
  std::string symbol = {}, address = {}, length = {};
  char display = watch_codes::kHex, width = watch_codes::kWord, sign = watch_codes::kSigned;

  static WatchForm ToAdd();
  static WatchForm ToModify(const WatchItem& item);

  static std::vector<std::string> Choices(const symbols::DebugInfo& info);
  // A name of the list was chosen, or typed so far, which makes capitals of it. The address follows
  // where it is that of a symbol or of an expression; of what is added also size and sign, where C
  // knows its type. The target is asked only in a context.
  void ChooseSymbol(std::string_view name, const WatchNames& names);
  void TypeSymbol(std::string_view text, const WatchNames& names);

  struct Refusal {
    Field field;
    std::string why;
  };
  // What is wrong with the texts, after a beep; nothing when an entry can be made of them.
  std::optional<Refusal> Check(const WatchNames& names, base::UserInterface& ui) const;
  WatchItem Item(const symbols::DebugInfo& info) const;

 private:
  void TakeType(const symbols::Type& type, const symbols::Types& types);
};

}  // namespace brevant::views
