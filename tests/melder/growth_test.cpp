// Many appends to one file: what each adds must not depend on what is there.
#include "workshop.h"

#include "melder/melder.h"

namespace melder_test {

namespace {

/** Cross-reference tables that a reader has to walk. */
int sectionsOf(const std::string& bytes) {
  int sections = 0;
  size_t at = bytes.rfind("startxref");
  size_t offset = at == std::string::npos ? 0 : std::stoul(bytes.substr(at + 9, 20));
  while (offset > 0 && sections < 10000) {
    ++sections;
    const size_t trailer = bytes.find("trailer", offset);
    const size_t end = bytes.find("startxref", trailer);
    const size_t previous = bytes.find("/Prev ", trailer);
    offset = previous < end ? std::stoul(bytes.substr(previous + 6, 20)) : 0;
  }
  return sections;
}

} // namespace

using Growth = Workshop;

TEST_F(Growth, AThousandAppendsStayLinearInBytesAndFlatForReaders) {
  for (const char* name : {"plain.pdf", "packed.pdf"}) {
    SCOPED_TRACE(name);
    const fs::path file = receiver(name);
    const auto start = fs::file_size(file);
    uintmax_t afterHundred = 0;
    for (int done = 1; done <= 1000; ++done) {
      ASSERT_TRUE(append(sample(done % 2 == 0 ? "one.pdf" : "linked.pdf"), file)) << lastError();
      afterHundred = done == 100 ? fs::file_size(file) : afterHundred;
    }
    FinishAppends();
    // A list or a table that each append writes again would make it three times and more.
    EXPECT_LT(fs::file_size(file) - start, 14 * (afterHundred - start));
    const std::vector<std::string> texts = pageTexts(file);
    ASSERT_EQ(texts.size(), 2003U);
    for (size_t page = 3; page < texts.size(); page += 4) {
      ASSERT_EQ(texts[page], "linked 1") << page;
      ASSERT_EQ(texts[page + 3], "one") << page;
    }
    const std::vector<std::string> seen = look(file);
    EXPECT_EQ(linesOf(seen, "depth"), std::vector<std::string>{"depth 3"});
    EXPECT_EQ(linesOf(seen, "bookmark").size(), 1500U);
    EXPECT_EQ(linesOf(seen, "link 2000"),
              (std::vector<std::string>{"link 2000 to 2002", "link 2000 to 2002"}));
    expectSound(file);
    if (std::string(name) == "plain.pdf") {
      EXPECT_LE(sectionsOf(bytesOf(file)), 32);
    }
  }
}

TEST_F(Growth, AThousandFormsDoNotMakeOneLongList) {
  const fs::path file = receiver("form.pdf");
  const auto start = fs::file_size(file);
  uintmax_t afterHundred = 0;
  for (int done = 1; done <= 1000; ++done) {
    ASSERT_TRUE(append(sample("form.pdf"), file)) << lastError();
    afterHundred = done == 100 ? fs::file_size(file) : afterHundred;
  }
  EXPECT_LT(fs::file_size(file) - start, 12 * (afterHundred - start));
  const std::vector<std::string> fields = linesOf(look(file), "field");
  ASSERT_EQ(fields.size(), 2002U);
  EXPECT_EQ(fields.back(), "field 1001 Appended2.31.8.Paid /Yes");
}

TEST_F(Growth, AFontThatRepeatsIsThereOnce) {
  const fs::path file = receiver("one.pdf");
  const auto start = fs::file_size(file);
  for (int done = 0; done < 20; ++done) {
    FinishAppends(); // also when the file is new to the library each time
    ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  }
  EXPECT_LT(fs::file_size(file), 2 * start);
  EXPECT_EQ(pageTexts(file), std::vector<std::string>(21, "one"));
}

TEST_F(Growth, OneProcessForEachAppendDoesNotLengthenTheChain) {
  const fs::path file = receiver("plain.pdf");
  for (int done = 0; done < 70; ++done) {
    FinishAppends();
    ASSERT_TRUE(append(sample("plain.pdf"), file)) << lastError();
  }
  EXPECT_LE(sectionsOf(bytesOf(file)), 34);
  EXPECT_EQ(pageTexts(file).size(), 213U);
  expectSound(file);
}

TEST_F(Growth, MoreFilesInTurnThanAreKeptAtHand) {
  constexpr int kFiles = 300;
  for (int round = 0; round < 2; ++round) {
    for (int each = 0; each < kFiles; ++each) {
      const fs::path file = folder() / (std::to_string(each) + ".pdf");
      if (round == 0) {
        fs::copy_file(sample("plain.pdf"), file);
      }
      ASSERT_TRUE(append(sample("plain.pdf"), file)) << lastError();
    }
  }
  EXPECT_EQ(pageTexts(folder() / "0.pdf").size(), 9U);
  EXPECT_EQ(pageTexts(folder() / "299.pdf").size(), 9U);
  EXPECT_LT(litter().size(), size_t{kFiles});
}

} // namespace melder_test
