// SPDX-License-Identifier: MIT
// The prompts for an address and for a symbol, as forms: what they offer, and what becomes of the
// text when "Ok" is chosen. Rejected text is answered with a beep and the prompt stays open.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/address.h"
#include "base/user_interface.h"
#include "symbols/debug_info.h"

namespace brevant::views {

namespace prompt_titles {
inline constexpr const char* kGoToAddress = "Goto Address";
inline constexpr const char* kGoToSymbol = "Go to symbol";
inline constexpr const char* kDataGoToSymbol = "Goto symbol";
inline constexpr const char* kRunTo = "Run to label or address";
}  // namespace prompt_titles

// The addresses entered last, newest first; shared by all address prompts of a run.
class AddressHistory {
 public:
  static constexpr std::size_t kEntries = 10;

  const std::vector<base::Address>& entries() const { return entries_; }
  // Moves the address to the front; the eleventh drops out.
  void Add(base::Address address);

 private:
  std::vector<base::Address> entries_;
};

class AddressPrompt {
 public:
  // Room for what may stand around the digits.
  static constexpr int kMaxLength = 12;

  AddressPrompt(std::string title, AddressHistory& history, base::UserInterface& ui)
      : title_(std::move(title)), history_(history), ui_(ui) {}

  const std::string& title() const { return title_; }
  std::vector<std::string> Choices() const;
  std::string InitialText() const;  // the newest address, if any
  // Hexadecimal digits, with "0x" or "$" in front and blanks around them if the user likes; the
  // address becomes the history's newest entry. Nothing, after a beep, for anything else and for
  // what is beyond FFFF.
  std::optional<base::Address> Accept(std::string_view text);
  // What was wrong with the text that was refused last.
  const std::string& refusal() const { return refusal_; }

 private:
  std::string title_;
  AddressHistory& history_;
  std::string refusal_;
  base::UserInterface& ui_;
};

class SymbolPrompt {
 public:
  static constexpr int kMaxLength = 99;

  SymbolPrompt(std::string title, const symbols::DebugInfo& debug_info, base::UserInterface& ui)
      : title_(std::move(title)), debug_info_(debug_info), ui_(ui) {}

  const std::string& title() const { return title_; }
  std::vector<std::string> Choices() const;  // every symbol, in table order
  // A symbol that is known, ignoring case, or else whatever names a place (symbols/places.h), or an
  // address as AddressPrompt takes it.
  std::optional<base::Address> Accept(std::string_view text);
  const std::string& refusal() const { return refusal_; }

 private:
  std::string title_;
  const symbols::DebugInfo& debug_info_;
  std::string refusal_;
  base::UserInterface& ui_;
};

}  // namespace brevant::views
