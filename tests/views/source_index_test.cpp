// SPDX-License-Identifier: MIT
#include "views/source_index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "base/temporary_folder.h"
#include "views/source_characters.h"

namespace brevant::views {
namespace {

using ::testing::ElementsAre;

class SourceIndexTest : public ::testing::Test {
 protected:
  SourceIndex Index(const std::string& text, const char* name = "t.c") {
    std::ofstream(folder_.path() / name, std::ios::binary) << text;
    return SourceIndex(folder_.path() / name);
  }
  static std::vector<std::string> Texts(const SourceIndex& index, int most = 100) {
    std::vector<std::string> texts;
    const auto lines = index.Read(0, 1000, most);
    for (const auto& line : lines.value_or(std::vector<SourceIndex::Line>())) {
      texts.push_back(line.text);
    }
    return texts;
  }

  base::TemporaryFolder folder_;
};

TEST_F(SourceIndexTest, TakesEveryKindOfLineEndAndEncoding) {
  EXPECT_THAT(Texts(Index("one\r\n\ttwo\n\n\rfour")), ElementsAre("one", "\ttwo", "", "\rfour"));
  EXPECT_THAT(Texts(Index("a\nb\n")), ElementsAre("a", "b"));
  EXPECT_THAT(Texts(Index("")), ElementsAre());
  EXPECT_THAT(Texts(Index("\xEF\xBB\xBF"
                          "a\n")),
              ElementsAre("a"));
  EXPECT_THAT(Texts(Index("gr\xC3\xBC\xC3\x9F\ngr\xFC\xDF\n\xC3(\n\xED\xA0\x80")),
              ElementsAre("grüß", "grüß", "Ã(", "í\xC2\xA0\xC2\x80"));
  // A line of any length is one line, of which only what fits is read, in whole characters.
  const std::string long_line = std::string(10000, 'x') + "\xC3\xBC";
  const SourceIndex index = Index(long_line + "\nend");
  EXPECT_EQ(index.line_count(), 2);
  EXPECT_EQ(Texts(index, 20000).front().size(), 10002u);
  EXPECT_LT(Texts(index, 50).front().size(), 300u);
  EXPECT_EQ(Texts(Index("x" + std::string(4000, '\xC3')), 10).front().front(), 'x');
}

TEST_F(SourceIndexTest, NeverReadsLinesOfAnotherVersion) {
  const SourceIndex index = Index("one\ntwo\n");
  EXPECT_TRUE(index.Current());
  Index("1\n2\n");
  EXPECT_FALSE(index.Current());
  EXPECT_FALSE(index.Read(0, 2, 10));
  EXPECT_FALSE(index.Find("1", 0, true));
  std::filesystem::remove(folder_.path() / "t.c");
  EXPECT_FALSE(index.Current());
  const SourceIndex gone(folder_.path() / "t.c");
  EXPECT_EQ(gone.why(), "No such file or directory");
  EXPECT_EQ(gone.line_count(), 0);
  EXPECT_TRUE(gone.Current()) << "still not there";
}

TEST_F(SourceIndexTest, FindsTextInLinesOfAnyLength) {
  const std::string filler(65530, '.');
  // Across the end of what is read at a time, too.
  const SourceIndex index = Index(filler + "LOOP: begins\nsecond\nw\xE4rts Loop\nW\xC3\xA4rts");
  EXPECT_EQ(index.Find("Loop", 0, false), 0);
  EXPECT_EQ(index.Find("Loop", 0, true), 2);
  EXPECT_EQ(index.Find("loop", 1, false), 2);
  EXPECT_EQ(index.Find("Loop", 3, false), std::nullopt);
  EXPECT_EQ(index.Find("beginssecond", 0, false), std::nullopt);
  EXPECT_EQ(index.Find("w\xC3\xA4rts", 0, false), 2) << "in Latin-1";
  EXPECT_EQ(index.Find("w\xC3\xA4rts", 3, false), 3) << "in UTF-8";
}

std::string Kinds(std::string_view text, SourceLanguage language, bool in_comment = false) {
  std::string kinds(static_cast<std::size_t>(CharacterCount(text)), '.');
  for (const TextSpan& span : ColourSpans(text, language, in_comment)) {
    constexpr std::string_view kLetters = ".kcns";
    kinds.replace(static_cast<std::size_t>(span.column), static_cast<std::size_t>(span.count),
                  static_cast<std::size_t>(span.count),
                  kLetters[static_cast<std::size_t>(span.kind)]);
  }
  return kinds;
}

TEST_F(SourceIndexTest, KnowsCommentsStringsAndKeywords) {
  using enum SourceLanguage;
  EXPECT_EQ(Kinds("if (x1 == 0x1F) /*a*/b//c", C), "kk........nnnn..ccccc.ccc");
  EXPECT_EQ(Kinds("s = \"a\\\"//\" + 'i';", C), "....sssssss...sss.");
  EXPECT_EQ(Kinds("grüß */ int", C, true), "ccccccc.kkk");
  EXPECT_EQ(Kinds("a / b * intx", C), "............");
  EXPECT_EQ(Kinds("l: lda #12 ; if", Assembler), "........nn.cccc");
  EXPECT_EQ(Kinds("* note", Assembler), "cccccc");
  EXPECT_EQ(Kinds("int 1", Plain), ".....");

  const auto begins = [](const SourceIndex& index) {
    std::string marks;
    const auto lines = index.Read(0, 100, 10);
    for (const auto& line : lines.value_or(std::vector<SourceIndex::Line>())) {
      marks += line.begins_in_comment ? 'c' : '.';
    }
    return marks;
  };
  const std::string text = "a /* b\n* **\n*/ \"/*\n\" // /*\nd";
  EXPECT_EQ(begins(Index(text)), ".cc..");
  EXPECT_EQ(begins(Index(text, "t.asm")), ".....");
}

TEST(SourceCharacters, TabsGoOnToTheNextMultiple) {
  EXPECT_EQ(ExpandSourceTabs("12345\tx", 4, 99), "12345   x");
  EXPECT_EQ(ExpandSourceTabs("12345\tx", 8, 99), "12345   x");
  EXPECT_EQ(ExpandSourceTabs("12345678\tx", 4, 99), "12345678    x");
  EXPECT_EQ(ExpandSourceTabs("12345678\tx", 8, 99), "12345678        x");
  EXPECT_EQ(ExpandSourceTabs("äö\t\x01ü", 4, 99), "äö   ü");
  EXPECT_EQ(ExpandSourceTabs("äöü\tend", 8, 5), "äöü  ") << "only what fits";
}

}  // namespace
}  // namespace brevant::views
