// What an appended part keeps, seen by readers that share no code with the library.
#include "workshop.h"

#include "melder/melder.h"

#include <algorithm>

namespace melder_test {

using Lines = std::vector<std::string>;
using Content = Workshop;

TEST_F(Content, PagesFollowInOrderWhateverTheKindOfFile) {
  for (const char* name : {"plain.pdf", "packed.pdf", "linear.pdf", "open-locked.pdf"}) {
    SCOPED_TRACE(name);
    const fs::path file = receiver(name);
    ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
    ASSERT_TRUE(append(sample("packed.pdf"), file)) << lastError();
    ASSERT_TRUE(append(sample("open-locked.pdf"), file)) << lastError();
    EXPECT_EQ(pageTexts(file), (Lines{"plain 1", "plain 2", "plain 3", "one", "plain 1", "plain 2",
                                      "plain 3", "plain 1", "plain 2", "plain 3"}));
    const Lines seen = look(file);
    EXPECT_EQ(linesOf(seen, "pikepdf"), Lines{"pikepdf pages 10 warnings 0"});
    const bool locked = std::string(name) == "open-locked.pdf";
    EXPECT_EQ(linesOf(seen, "encrypted"), Lines{locked ? "encrypted True" : "encrypted False"});
    expectSound(file);
  }
}

TEST_F(Content, PagesNeitherTakeNorLoseWhatTheyInherit) {
  const fs::path file = receiver("flat.pdf");
  ASSERT_TRUE(append(sample("turned.pdf"), file)) << lastError();
  ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  const Lines seen = look(file);
  EXPECT_EQ(linesOf(seen, "page 200 "),
            Lines{"page 200 label - turned 180 size 300 842 text flat 200"});
  EXPECT_EQ(linesOf(seen, "page 201 "),
            Lines{"page 201 label - turned 90 size 780 390 text turned 1"});
  EXPECT_EQ(linesOf(seen, "page 202 "), Lines{"page 202 label - turned 90 size 300 300 text "});
  EXPECT_EQ(linesOf(seen, "page 203 "), Lines{"page 203 label - turned 0 size 595 842 text one"});
  expectSound(file);
}

TEST_F(Content, LinksNamesBookmarksAndLabelsStayWithTheirPart) {
  const fs::path file = receiver("linked.pdf");
  const Lines before = look(file);
  ASSERT_TRUE(append(sample("linked.pdf"), file)) << lastError();
  ASSERT_TRUE(append(sample("plain.pdf"), file)) << lastError();
  const Lines seen = look(file);
  EXPECT_EQ(
      linesOf(seen, "link"),
      (Lines{"link 1 to 3", "link 1 to 3", "link 2 to 2", "link 3 to 1", "link 3 to nowhere",
             "link 4 to 6", "link 4 to 6", "link 5 to 5", "link 6 to 4", "link 6 to nowhere"}));
  EXPECT_EQ(linesOf(seen, "destination"),
            (Lines{"destination p0000004.old style 5", "destination p0000004.place0 4",
                   "destination p0000004.place1 5", "destination p0000004.place2 6",
                   "destination place0 1", "destination place1 2", "destination place2 3"}));
  EXPECT_EQ(linesOf(seen, "bookmark"),
            (Lines{"bookmark 1 Chapter 1 1", "bookmark 1 Chapter 2 2", "bookmark 2 Chapter 3 3",
                   "bookmark 1 Chapter 1 4", "bookmark 1 Chapter 2 5", "bookmark 2 Chapter 3 6"}));
  Lines labels;
  for (const std::string& line : linesOf(seen, "page ")) {
    labels.push_back(line.substr(0, line.find(" turned")));
  }
  EXPECT_EQ(labels, (Lines{"page 1 label i", "page 2 label ii", "page 3 label A-1",
                           "page 4 label i", "page 5 label ii", "page 6 label A-1",
                           "page 7 label 7", "page 8 label 8", "page 9 label 9"}));
  EXPECT_EQ(linesOf(seen, "title"), linesOf(before, "title"));
}

TEST_F(Content, NamesThatAreFreeStayAsTheyAre) {
  const fs::path file = receiver("plain.pdf");
  ASSERT_TRUE(append(sample("linked.pdf"), file)) << lastError();
  EXPECT_EQ(linesOf(look(file), "destination"),
            (Lines{"destination old style 5", "destination place0 4", "destination place1 5",
                   "destination place2 6"}));
}

TEST_F(Content, FieldsOfOneNameStayIndependent) {
  const fs::path file = receiver("plain.pdf");
  ASSERT_TRUE(append(sample("form.pdf"), file)) << lastError();
  ASSERT_TRUE(append(sample("form-other.pdf"), file)) << lastError();
  ASSERT_TRUE(append(sample("form.pdf"), file)) << lastError();
  const Lines seen = look(file);
  EXPECT_EQ(linesOf(seen, "field"),
            (Lines{"field 4 Total 12.50", "field 4 Paid /Yes", "field 5 Total+1 99.00",
                   "field 5 Paid+1 /Yes", "field 6 Total+2 12.50", "field 6 Paid+2 /Yes"}));
  EXPECT_EQ(linesOf(seen, "top"), Lines{"top fields Total Paid Total+1 Paid+1 Total+2 Paid+2"});
  expectSound(file);
}

TEST_F(Content, EqualLayersBecomeOneAndHiddenOnesStayHidden) {
  const fs::path file = receiver("plain.pdf");
  ASSERT_TRUE(append(sample("layers.pdf"), file)) << lastError();
  ASSERT_TRUE(append(sample("layers.pdf"), file)) << lastError();
  const Lines seen = look(file);
  EXPECT_EQ(linesOf(seen, "layer"), (Lines{"layer Seen shown", "layer Unseen hidden"}));
  EXPECT_TRUE(std::ranges::any_of(
      seen, [](const auto& line) { return line.ends_with("text layers 1 / layer seen"); }));
  EXPECT_TRUE(std::ranges::none_of(
      seen, [](const auto& line) { return line.find("layer unseen") != std::string::npos; }));
}

TEST_F(Content, AFileCanBeAppendedToItself) {
  const fs::path file = receiver("linked.pdf");
  ASSERT_TRUE(append(file, file)) << lastError();
  ASSERT_TRUE(append(file, file)) << lastError();
  const Lines seen = look(file);
  EXPECT_EQ(linesOf(seen, "pages"), Lines{"pages 12"});
  EXPECT_EQ(linesOf(seen, "link 12"), (Lines{"link 12 to 10", "link 12 to nowhere"}));
  expectSound(file);
}

TEST_F(Content, TwoFilesGiveANewOne) {
  const fs::path target = folder() / u8"zusammen \u2192 .pdf";
  const auto join = [](const fs::path& first, const fs::path& second, const fs::path& to) {
    return getAppendPDFFile(first.u16string().c_str(), second.u16string().c_str(),
                            to.u16string().c_str()) != 0;
  };
  ASSERT_TRUE(join(sample("plain.pdf"), sample("one.pdf"), target)) << lastError();
  EXPECT_EQ(pageTexts(target), (Lines{"plain 1", "plain 2", "plain 3", "one"}));
  ASSERT_TRUE(join(sample("open-locked.pdf"), target, target)) << lastError();
  const Lines seen = look(target);
  EXPECT_EQ(linesOf(seen, "pages"), Lines{"pages 7"});
  EXPECT_EQ(linesOf(seen, "encrypted"), Lines{"encrypted True"});
  expectSound(target);
  EXPECT_FALSE(join(sample("plain.pdf"), sample("locked.pdf"), target));
  EXPECT_EQ(GetStatus(), MELDER_WRONG_PASSWORD);
  EXPECT_EQ(pageTexts(target).size(), 7U);
}

} // namespace melder_test
