// The outputs as the e-mail list gets them.
#include "engine/output/EmailRecords.h"
#include "tests/support/Programs.h"

#include <gtest/gtest.h>

using namespace folivex;

TEST(EmailRecords, OneAFileWithItsLastPage) {
  EmailRecords records;
  records.record({1, 2, QStringLiteral("A"), QStringLiteral("/out/a.pdf")});
  records.record({3, 3, QStringLiteral("B"), QStringLiteral("/out/b.pdf")});
  records.record({7, 9, QStringLiteral("later A"), QStringLiteral("/out/a.pdf")});
  ASSERT_EQ(records.all().size(), 2u);
  const EmailRecord& first = records.all()[0];
  EXPECT_EQ(first.firstPage, 1);
  EXPECT_EQ(first.lastPage, 9);
  EXPECT_EQ(first.matchedText, QStringLiteral("A"));
  records.clear();
  records.record({1, 2, QStringLiteral("A"), QStringLiteral("/out/a.pdf")});
  EXPECT_EQ(records.all().size(), 1u);
}

TEST(EmailRecords, FilesThatDifferOnlyBehindTheKeptPartStayTwo) {
  EmailRecords records;
  const QString folder = QString(300, QLatin1Char('x'));
  records.record({1, 1, folder, folder + QStringLiteral("1.pdf")});
  records.record({2, 2, folder, folder + QStringLiteral("2.pdf")});
  ASSERT_EQ(records.all().size(), 2u);
  EXPECT_EQ(records.all()[0].lastPage, 1);
  EXPECT_EQ(records.all()[0].matchedText.size(), 255);
  EXPECT_EQ(records.all()[1].outputPath.size(), 255);
}
