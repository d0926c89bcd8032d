// SPDX-License-Identifier: MIT
// SDCC's type chains and structure records as types: "DA3d,STpt:S" is an array of three "struct
// pt". The chain reads from the variable inwards: DA<n>d array, DF function, other D<letter>
// pointers, and at its end S and the base type with its sign.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "symbols/types.h"

namespace brevant::symbols {

class SdccTypes {
 public:
  explicit SdccTypes(Types& types) : types_(types) {}

  // "Fmain$pt[({0}S:S$x$0_0$0({1}SC:U),Z,0,0)...]": the members of main's "struct pt" with their
  // offsets. All records come before the first chain, and their text outlives this object.
  void AddRecord(std::string_view record);
  // The type of a variable of size bytes, 0 when that is not known: the chain says SI for int and
  // for long long. An unknown chain is a type of that name.
  TypeId Find(std::string_view chain, int size, std::string_view module);

 private:
  TypeId Make(std::string_view chain, int size, std::string_view module);
  TypeId Derived(std::string_view chain, int size, std::string_view module);
  TypeId Structure(std::string_view tag, int size, std::string_view module);
  Member ParseMember(std::string_view record, std::size_t& at, std::string_view module);
  TypeId Unknown(std::string_view chain, int size);

  Types& types_;
  std::map<std::string, std::string_view, std::less<>> records_;  // "main$pt" -> its members
  std::map<std::string, TypeId, std::less<>> structures_;         // "main$pt"
  std::map<std::string, TypeId, std::less<>> known_;              // module, chain and size
};

}  // namespace brevant::symbols
