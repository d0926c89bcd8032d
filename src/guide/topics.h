// SPDX-License-Identifier: MIT
// The help topics: which page of the guide explains a command, a window, a dialog, and which pages
// hold a text. Each page says by itself what it explains, in a comment before its heading:
//
//     <!-- topic
//     commands: 190 341
//     windows: MDI_Csrc
//     dialogs: FindDlg
//     keywords: step, single step
//     -->
//     # Step
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "guide/pages.h"

namespace brevant::guide {

struct Topic {
  std::string file;                           // "step.md"
  std::string title;                          // of its first heading
  std::string markdown;                       // without the comment
  std::vector<int> commands;                  // ids
  std::vector<std::string> windows, dialogs;  // their object names
  std::vector<std::string> keywords;
};

// Keys that are not known are passed over; a page without the comment explains nothing.
Topic ParseTopic(const Page& page);

class Guide {
 public:
  static constexpr std::string_view kContents = "README.md";

  explicit Guide(std::span<const Page> pages);

  // The contents first, then in the order in which they name the others; last what they do not.
  std::span<const Topic> topics() const { return topics_; }

  // nullptr for none.
  const Topic* Find(std::string_view file) const;
  const Topic* OfCommand(int id) const;
  const Topic* OfWindow(std::string_view name) const;
  const Topic* OfDialog(std::string_view name) const;

  // The topics that hold all words of the text, letters in either case: those that have them in
  // title or keywords first. All for an empty text.
  std::vector<const Topic*> Search(std::string_view text) const;

 private:
  std::vector<Topic> topics_;
};

}  // namespace brevant::guide
