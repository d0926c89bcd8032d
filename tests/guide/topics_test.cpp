// SPDX-License-Identifier: MIT
#include "guide/topics.h"

#include <gtest/gtest.h>

#include <set>

#include "base/settings_keys.h"

namespace brevant::guide {
namespace {

constexpr Page kPages[] = {
    {"README.md", "# Contents\n\n[Watch](watch.md) and [Step](step.md#step-over)\n"},
    {"lost.md", "# Lost\n\nNobody names this page.\n"},
    {"step.md",
     "<!-- topic\ncommands: 190 341\ndialogs: NSTEPDLG\nkeywords: single step, F5\n-->\n\n"
     "# Step\r\n\n![a](images/a.png) ![b](b.png)\n\nOne instruction. The WATCH window follows.\n"},
    {"watch.md", "<!-- topic\nwindows: MDI_Watch\nkind: other\n-->\n# Watch\n\nValues.\n"},
};

TEST(Guide, KnowsWhatEachPageExplains) {
  const Guide guide(kPages);
  ASSERT_EQ(guide.topics().size(), 4u);
  EXPECT_EQ(guide.topics()[0].title, "Contents");
  EXPECT_EQ(guide.topics()[1].title, "Watch") << "in the order of the contents";
  EXPECT_EQ(guide.topics()[2].title, "Step");
  EXPECT_EQ(guide.topics()[3].title, "Lost");
  EXPECT_EQ(guide.OfCommand(341)->file, "step.md");
  EXPECT_EQ(guide.OfCommand(34), nullptr);
  EXPECT_EQ(guide.OfWindow("MDI_Watch")->file, "watch.md");
  EXPECT_EQ(guide.OfDialog("NSTEPDLG")->file, "step.md");
  EXPECT_EQ(guide.OfDialog("MDI_Watch"), nullptr);
  EXPECT_TRUE(guide.Find("step.md")->markdown.starts_with("# Step"));
  EXPECT_EQ(guide.Find("step.md")->markdown.find("png"), std::string::npos);
}

TEST(Guide, FindsAllWordsTitlesAndKeywordsFirst) {
  const Guide guide(kPages);
  const auto watch = guide.Search("watch");
  ASSERT_EQ(watch.size(), 3u);
  EXPECT_EQ(watch[0]->file, "watch.md");
  EXPECT_EQ(guide.Search(" one  F5 ").size(), 1u);
  EXPECT_TRUE(guide.Search("one nobody").empty());
  EXPECT_EQ(guide.Search("").size(), 4u);
}

// The pages themselves.
TEST(Guide, EveryLinkLeadsSomewhereAndNothingIsExplainedTwice) {
  const Guide guide(Pages());
  ASSERT_NE(guide.Find(Guide::kContents), nullptr);
  std::set<std::string> claimed;
  for (const Topic& topic : guide.topics()) {
    EXPECT_FALSE(topic.title.empty()) << topic.file;
    for (const int id : topic.commands)
      EXPECT_TRUE(claimed.insert(std::to_string(id)).second) << topic.file << ' ' << id;
    for (const auto& names : {topic.windows, topic.dialogs}) {
      for (const std::string& name : names)
        EXPECT_TRUE(claimed.insert(name).second) << topic.file << ' ' << name;
    }
    for (std::size_t at = 0; (at = topic.markdown.find("](", at)) != std::string::npos;) {
      at += 2;
      const std::string link =
          topic.markdown.substr(at, topic.markdown.find_first_of("#)", at) - at);
      const bool page = link.ends_with(".md");
      EXPECT_TRUE(!page || guide.Find(link) != nullptr) << topic.file << ": " << link;
    }
    if (topic.file == Guide::kContents) continue;
    EXPECT_NE(guide.Find(Guide::kContents)->markdown.find("(" + topic.file), std::string::npos)
        << topic.file << " is not in the contents";
  }
}

TEST(Guide, ExplainsEveryKeyOfTheSettingsFile) {
  const Guide guide(Pages());
  const std::string& page = guide.Find("settings-file.md")->markdown;
  for (const base::SettingsKey& row : base::AllSettingsKeys()) {
    const std::string key = base::NumberedKey(row, row.first);
    EXPECT_NE(page.find('`' + key + '`'), std::string::npos) << key;
  }
}

}  // namespace
}  // namespace brevant::guide
