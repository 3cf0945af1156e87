// Many appends to one file: what parts have in common is not stored again.
#include "workshop.h"

namespace melder_test {

using Growth = Workshop;

TEST_F(Growth, FontsThatRepeatAreThereOnce) {
  const fs::path file = receiver("one.pdf");
  const auto start = fs::file_size(file);
  for (int done = 0; done < 20; ++done) {
    ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  }
  EXPECT_LT(fs::file_size(file), 2 * start);
  EXPECT_EQ(pageTexts(file), std::vector<std::string>(21, "one"));
  // Another font of the same name is another font.
  const fs::path other = receiver("plain.pdf");
  ASSERT_TRUE(append(sample("one.pdf"), other)) << lastError();
  ASSERT_TRUE(append(sample("one-other.pdf"), other)) << lastError();
  ASSERT_TRUE(append(sample("one.pdf"), other)) << lastError();
  EXPECT_EQ(pageTexts(other),
            (std::vector<std::string>{"plain 1", "plain 2", "plain 3", "one", "two", "one"}));
}

TEST_F(Growth, AHundredAppendsStaySoundAndFindTheirPages) {
  for (const char* name : {"plain.pdf", "packed.pdf"}) {
    SCOPED_TRACE(name);
    const fs::path file = receiver(name);
    for (int done = 1; done <= 100; ++done) {
      ASSERT_TRUE(append(sample(done % 2 == 0 ? "form.pdf" : "linked.pdf"), file)) << lastError();
    }
    const std::vector<std::string> seen = look(file);
    EXPECT_EQ(linesOf(seen, "pages"), std::vector<std::string>{"pages 203"});
    EXPECT_EQ(linesOf(seen, "bookmark").size(), 150U);
    EXPECT_EQ(linesOf(seen, "link 200"),
              (std::vector<std::string>{"link 200 to 202", "link 200 to 202"}));
    EXPECT_EQ(linesOf(seen, "field").back(), "field 203 Paid+49 /Yes");
    expectSound(file);
  }
}

} // namespace melder_test
