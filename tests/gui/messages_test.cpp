// SPDX-License-Identifier: MIT
// Every message that the program can show: the front ends tell them apart by id and severity.
#include "gui/messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <span>
#include <string>

#include "control/messages.h"
#include "flash/messages.h"
#include "images/messages.h"
#include "link/messages.h"
#include "load/messages.h"
#include "symbols/messages.h"
#include "views/messages.h"
#include "workspace/messages.h"

namespace brevant {
namespace {

TEST(Messages, HaveIdsOfTheirOwnAndTheCaptionOfTheirSeverity) {
  using Rows = std::span<const base::MessageText* const>;
  std::set<std::string> ids;
  for (const Rows rows :
       {Rows(link::kAllMessages), Rows(symbols::kAllMessages), Rows(control::messages::kAll),
        Rows(images::messages::kAll), Rows(load::messages::kAll), Rows(flash::messages::kAll),
        Rows(views::messages::kAll), Rows(workspace::messages::kAll), Rows(gui::messages::kAll)}) {
    for (const base::MessageText* row : rows) {
      EXPECT_THAT(row->id, testing::MatchesRegex("[a-z]+\\.[a-z-]+"));
      EXPECT_TRUE(ids.insert(row->id).second) << row->id << " is there twice";
      const bool error = row->severity == base::Severity::Error;
      EXPECT_EQ(error, std::string(row->caption) == "Error Message") << row->id;
    }
  }
}

}  // namespace
}  // namespace brevant
