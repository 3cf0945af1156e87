// What an appended part keeps.
#include "tests/melder/Workshop.h"

using namespace folivex::test;

using Content = Workshop;

/// A row is made of a file and the parts that are appended to it.
TEST_F(Content, WhatStaysWithItsPart) {
  expectFacts("melder/joining.txt",
              [this](const QStringList& files) { return receiver(files[0], files.mid(1)); });
}

TEST_F(Content, FontsThatRepeatAreThereOnce) {
  const QString file = receiver("one.pdf", QStringList(20, "one.pdf"));
  EXPECT_LT(contentOf(file).size(), 2 * contentOf(sample("one.pdf")).size());
  EXPECT_EQ(pageTexts(file), QStringList(21, "one"));
  // Another font of the same name is another font.
  EXPECT_EQ(pageTexts(receiver("plain.pdf", {"one.pdf", "one-other.pdf", "one.pdf"})).mid(3),
            (QStringList{"one", "two", "one"}));
}

TEST_F(Content, TwoFilesGiveANewOne) {
  const QString target = at("zusammen \u2192 .pdf");
  const auto join = [&](const QString& first, const QString& second) {
    return getAppendPDFFile(utf16(first), utf16(second), utf16(target)) != 0;
  };
  ASSERT_TRUE(join(sample("plain.pdf"), sample("one.pdf"))) << lastError();
  EXPECT_EQ(pageTexts(target), (QStringList{"plain 1", "plain 2", "plain 3", "one"}));
  ASSERT_TRUE(join(sample("open-locked.pdf"), target)) << lastError();
  EXPECT_TRUE(factsOf(target).contains("file locked 1.7"));
  EXPECT_FALSE(join(sample("plain.pdf"), sample("locked.pdf")));
  EXPECT_EQ(GetStatus(), MELDER_WRONG_PASSWORD);
  EXPECT_EQ(pageTexts(target).size(), 7);
}
