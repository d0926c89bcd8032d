// SPDX-License-Identifier: MIT
#include "flash/flash_forms.h"

#include <gtest/gtest.h>

#include <array>

#include "load/target_bench.h"

namespace brevant::flash {
namespace {

using load::ByteList;
using load::Texts;

struct Forms : ::testing::Test {
  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};
  base::TestUser user;
};

TEST_F(Forms, EraseRangeBeepsAtWhatIsNoAddress) {
  EraseRangeForm form = EraseRangeForm::Open(settings);
  EXPECT_EQ(form.from, "8000");
  EXPECT_EQ(form.to, "FFFF");
  for (const char* bad : {"", "80 0", "80000", "g"}) {
    form.to = bad;
    EXPECT_FALSE(form.Commit(settings, user)) << bad;
  }
  EXPECT_EQ(user.beeps, 4);
  form = {"9a", "A000"};
  const auto range = form.Commit(settings, user);
  ASSERT_TRUE(range);
  EXPECT_EQ(range->start, 0x9Au);
  EXPECT_EQ(range->end, 0xA000u);
  EXPECT_EQ(EraseRangeForm::Open(settings).from, "9a");
}

TEST_F(Forms, ProgramLocationNormalisesItsData) {
  ProgramLocationForm form = ProgramLocationForm::Open(settings);
  EXPECT_EQ(form.address, "");
  const std::string not_bytes =
      "The string should be maximum of two HEX digits seperated by a space";
  for (const auto& [address, content, text] :
       std::vector<std::array<std::string, 3>>{{"", "12", "Not a correct HEX address"},
                                               {"12345", "12", "Not a correct HEX address"},
                                               {"9000", " ,; 12", "No data to program"},
                                               {"9000", "123", not_bytes},
                                               {"9000", "12 3g", not_bytes}}) {
    form = {address, content};
    EXPECT_FALSE(form.Commit(settings, user));
    EXPECT_EQ(user.TakeTexts(), Texts{text}) << content;
  }
  form = {"9000", "12  34,56 ; three"};
  const auto data = form.Commit(settings, user);
  ASSERT_TRUE(data);
  EXPECT_EQ(data->address, 0x9000u);
  EXPECT_EQ(data->bytes, (ByteList{0x12, 0x34, 0x56}));
  EXPECT_EQ(ProgramLocationForm::Open(settings).content, "12 34 56");
}

TEST_F(Forms, ProgramFileWantsAReadableFile) {
  ProgramFileForm form = ProgramFileForm::Open(settings);
  EXPECT_FALSE(form.Check(user));
  EXPECT_EQ(user.TakeTexts(), Texts{"Can not access the file you select"});
  std::ofstream(folder.path() / "a.sx") << "S9";
  form.file_name = (folder.path() / "a.sx").string();
  EXPECT_TRUE(form.Check(user));
}

}  // namespace
}  // namespace brevant::flash
