// The outputs as the e-mail list gets them.
#include "engine/output/EmailRecords.h"
#include "tests/support/Programs.h"

#include <gtest/gtest.h>

using namespace folivex;

using Repeat = EmailRecords::Repeat;

TEST(EmailRecords, LongPathsStayWhole) {
  EmailRecords records;
  const QString folder(300, 'x');
  const QString matched = QString(254, 'm') + QString::fromUtf8("\xF0\x9D\x84\x9E");
  records.record({1, 1, matched, folder + "1.pdf", {}}, Repeat::Grows);
  records.record({2, 2, folder, folder + "2.pdf", {}}, Repeat::Grows);
  ASSERT_EQ(records.all().size(), 2u);
  EXPECT_EQ(records.all()[0].matchedText.size(), 254) << "half a character";
  EXPECT_EQ(records.all()[1].matchedText.size(), 255);
  EXPECT_EQ(records.all()[1].outputPath, folder + "2.pdf");
}

/// Whoever's pages are not in the file any more must not get it.
TEST(EmailRecords, MailFollowsThePagesThatTheFileHolds) {
  const auto after = [](Repeat repeat) {
    EmailRecords records;
    records.record({1, 1, "A", "/a.pdf", {"a@x", {}}}, repeat);
    records.record({2, 2, "A", "/b.pdf", {}}, repeat);
    records.record({3, 4, "later A", "/a.pdf", {"b@x", {"a@x", "c@x"}}}, repeat);
    records.drop({"/b.pdf"});
    EXPECT_EQ(records.all().size(), 1u);
    const EmailRecord& left = records.all().front();
    EXPECT_EQ(left.lastPage, 4);
    return QStringList{left.matchedText, left.addresses.address} + left.addresses.further;
  };
  EXPECT_EQ(after(Repeat::Grows), (QStringList{"A", "a@x", "b@x", "c@x"}));
  EXPECT_EQ(after(Repeat::Replaced), (QStringList{"A", "b@x", "a@x", "c@x"}));
}

/// Who gets a file must know whose pages are in it.
TEST(EmailRecords, AFileThatGrewByAnothersPagesSaysSo) {
  EmailRecords records;
  records.record({1, 1, "A", "/one.pdf", {"a@x.org", {}}}, Repeat::Grows);
  records.record({2, 2, "A", "/one.pdf", {"A@X.org", {}}}, Repeat::Grows);
  records.record({3, 3, "A", "/one.pdf", {}}, Repeat::Grows);
  EXPECT_FALSE(records.all()[0].addressesDiffer);
  records.record({4, 4, "A", "/one.pdf", {"b@x.org", {}}}, Repeat::Grows);
  EXPECT_TRUE(records.all()[0].addressesDiffer);
  records.record({5, 5, "B", "/two.pdf", {"a@x.org", {}}}, Repeat::Replaced);
  records.record({6, 6, "B", "/two.pdf", {"b@x.org", {}}}, Repeat::Replaced);
  EXPECT_FALSE(records.all()[1].addressesDiffer);
}
