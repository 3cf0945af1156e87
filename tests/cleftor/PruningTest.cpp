#include "Splitting.h"

namespace tests::cleftor {

namespace {

class PruningTest : public SplittingTest {
protected:
  /// Size of the pixmap that a page makes: a thing lost from it shows.
  static std::string drawing(const fs::path& file, int page) {
    return run("mutool draw -q -r 36 -F pgm -o - " + file.string() + " " + std::to_string(page) +
               " | md5sum");
  }

  static int pictures(const fs::path& file) {
    return std::stoi(
        run("mutool show " + file.string() + " grep | grep -c /Subtype/Image || true"));
  }
};

/// Each page reaches one picture of the shared dictionary, each in a way of its own.
TEST_F(PruningTest, SharedResourcesComeAlongOnlyAsFarAsUsed) {
  ASSERT_EQ(open("shared"), CLEFTOR_OK);
  ASSERT_EQ(GetPageCount2(), 10);
  for (int page = 1; page <= 10; ++page) {
    // Content that cannot be read, as on the last page, may use anything.
    const int count = page == 1 ? 0 : page == 10 ? 9 : 1;
    ASSERT_EQ(split(page, page), CLEFTOR_OK) << errorText();
    EXPECT_EQ(pictures(output()), count) << "page " << page;
    EXPECT_EQ(drawing(output(), 1), drawing(source("shared"), page)) << "page " << page;
  }
}

TEST_F(PruningTest, NothingOfOtherPagesClingsToARange) {
  ASSERT_EQ(open("clinging"), CLEFTOR_OK);
  ASSERT_EQ(split(2, 2), CLEFTOR_OK) << errorText();
  // One picture of 40,000 bytes that do not compress; the source holds three and an attachment.
  EXPECT_LT(fs::file_size(output()), 44'000U);
  EXPECT_EQ(pictures(output()), 1);
  EXPECT_EQ(drawing(output(), 1), drawing(source("clinging"), 2));
  ASSERT_EQ(split(2, 3), CLEFTOR_OK) << errorText();
  EXPECT_LT(fs::file_size(output()), 86'000U);
  EXPECT_THAT(facts("field"), testing::ElementsAre("field all = v on 1 2"));
  EXPECT_THAT(facts("link 1"), testing::ElementsAre("link 1 to 2", "link 1 to nowhere",
                                                    "link 1 to nowhere", "link 1 to 2"));
}

} // namespace

} // namespace tests::cleftor
