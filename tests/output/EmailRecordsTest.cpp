// The outputs as the e-mail list gets them.
#include "engine/output/EmailRecords.h"
#include "tests/support/Programs.h"

#include <gtest/gtest.h>

using namespace folivex;

using Repeat = EmailRecords::Repeat;

TEST(EmailRecords, OneAFileWithItsLastPage) {
  EmailRecords records;
  records.record({1, 2, QStringLiteral("A"), QStringLiteral("/out/a.pdf"), {}}, Repeat::Grows);
  records.record({3, 3, QStringLiteral("B"), QStringLiteral("/out/b.pdf"), {}}, Repeat::Grows);
  records.record({7, 9, QStringLiteral("later A"), QStringLiteral("/out/a.pdf"), {}},
                 Repeat::Grows);
  ASSERT_EQ(records.all().size(), 2u);
  const EmailRecord& first = records.all()[0];
  EXPECT_EQ(first.firstPage, 1);
  EXPECT_EQ(first.lastPage, 9);
  EXPECT_EQ(first.matchedText, QStringLiteral("A"));
  records.clear();
  records.record({1, 2, QStringLiteral("A"), QStringLiteral("/out/a.pdf"), {}}, Repeat::Grows);
  EXPECT_EQ(records.all().size(), 1u);
}

TEST(EmailRecords, LongPathsStayWhole) {
  EmailRecords records;
  const QString folder = QString(300, QLatin1Char('x'));
  const QString matched = QString(254, QLatin1Char('m')) + QString::fromUtf8("\xF0\x9D\x84\x9E");
  records.record({1, 1, matched, folder + QStringLiteral("1.pdf"), {}}, Repeat::Grows);
  records.record({2, 2, folder, folder + QStringLiteral("2.pdf"), {}}, Repeat::Grows);
  ASSERT_EQ(records.all().size(), 2u);
  EXPECT_EQ(records.all()[0].lastPage, 1);
  EXPECT_EQ(records.all()[0].matchedText.size(), 254) << "half a character";
  EXPECT_EQ(records.all()[1].matchedText.size(), 255);
  EXPECT_EQ(records.all()[1].outputPath, folder + QStringLiteral("2.pdf"));
}

/// Whoever's pages are not in the file any more must not get it.
TEST(EmailRecords, MailFollowsThePagesThatTheFileHolds) {
  const auto after = [](Repeat repeat) {
    EmailRecords records;
    records.record(
        {1, 1, QStringLiteral("A"), QStringLiteral("/a.pdf"), {QStringLiteral("a@x"), {}}}, repeat);
    records.record({2, 2, QStringLiteral("A"), QStringLiteral("/b.pdf"), {}}, repeat);
    records.record({3,
                    3,
                    QStringLiteral("A"),
                    QStringLiteral("/a.pdf"),
                    {QStringLiteral("b@x"), {QStringLiteral("a@x"), QStringLiteral("c@x")}}},
                   repeat);
    records.drop({QStringLiteral("/b.pdf")});
    EXPECT_EQ(records.all().size(), 1u);
    const AddressReader::Found& found = records.all().front().addresses;
    return QStringList(found.address) + found.further;
  };
  EXPECT_EQ(after(Repeat::Grows), (QStringList{"a@x", "b@x", "c@x"}));
  EXPECT_EQ(after(Repeat::Replaced), (QStringList{"b@x", "a@x", "c@x"}));
}
