// The list file: exact bytes out, every kind of line in, and nothing lost when writing fails.
#include "batch/ListFile.h"
#include "tests/batch/BatchBench.h"
#include "tests/support/Rows.h"

#include <sys/stat.h>

using namespace folivex;
using folivex::testing::entry;
using folivex::testing::texts;

namespace {

class ListFile : public folivex::testing::BatchBench {};

} // namespace

TEST_F(ListFile, BytesAreExact) {
  const QString longest(252, 'x');
  const auto saved =
      writeListFile(at("x.lst"), {entry("Yes", "a.pdf"), entry("No", "b.pdf"),
                                  entry("Yes, No Stamp", "c.pdf"), entry("", "Größe 日.pdf")});
  EXPECT_EQ(saved.failure, QString());
  EXPECT_EQ(saved.notKept, 0);
  EXPECT_EQ(read("x.lst"), "a.pdf||\n~b.pdf||\n+c.pdf||\nGröße 日.pdf||\n");
  EXPECT_EQ(texts(readListFile(at("x.lst")).entries),
            (QStringList{"Yes a.pdf", "No b.pdf", "No c.pdf", "Yes Größe 日.pdf"}));
  // Some paths the format cannot hold.
  EXPECT_EQ(
      writeListFile(at("x.lst"), {entry("Yes", longest), entry("No", longest), entry("Yes", "a|b"),
                                  entry("Yes", "a\nb"), entry("Yes", "~a"), entry("No", "~a")})
          .notKept,
      4);
}

TEST_F(ListFile, EveryKindOfLine) {
  test::forEachRow("batch/list-lines.json", [](const SplitSetup&, const QStringList& row) {
    const ListFileContent content = parseListFile(row[0].toLatin1());
    EXPECT_EQ(texts(content.entries), row.mid(1));
    EXPECT_EQ(content.cutLine, 0);
  });
}

TEST_F(ListFile, ReadingEndsAtALineThatIsTooLong) {
  const QByteArray fits(254, 'x');
  for (const char* end : {"\n", ""}) {
    EXPECT_EQ(parseListFile(fits + end).cutLine, 0);
  }
  const ListFileContent cut = parseListFile("a||\n" + fits + "y||\nb||\n");
  ASSERT_EQ(cut.entries.size(), 2U);
  EXPECT_EQ(cut.entries[1].path, QString(fits));
  EXPECT_EQ(cut.cutLine, 2);
  // Characters count, not bytes; and no half of one stays.
  const QString wide = QString("é").repeated(253) + QString("😀");
  EXPECT_EQ(parseListFile(wide.toUtf8()).entries.at(0).path, wide.first(253));
  const QString widest = QString("日").repeated(254);
  EXPECT_EQ(parseListFile(widest.toUtf8()).entries.at(0).path, widest);
  EXPECT_EQ(parseListFile(widest.repeated(1000).toUtf8()).entries.at(0).path, widest);
}

TEST_F(ListFile, UnreadableFilesSayWhy) {
  ASSERT_EQ(mkfifo(QFile::encodeName(at("pipe")).constData(), 0600), 0);
  write("lines", QByteArray("a\n").repeated(maxListLines + 1));
  for (const char* name : {"missing", "tmp", "pipe", "lines"}) {
    const ListFileContent content = readListFile(at(name));
    EXPECT_FALSE(content.failure.isEmpty()) << name;
    EXPECT_TRUE(content.entries.empty()) << name;
  }
}

TEST_F(ListFile, UnwritablePlacesSayWhy) {
  const QString target = write("target.lst", "old||\n");
  ASSERT_TRUE(QFile::link(target, at("tmp/link.lst")));
  for (const QString& place : {at("tmp"), at("none/x.lst"), at("tmp/link.lst"),
                               QStringLiteral("/dev/null"), QStringLiteral("default.lst")}) {
    EXPECT_FALSE(writeListFile(place, {}).failure.isEmpty()) << place.toStdString();
  }
  EXPECT_FALSE(QFile::exists("default.lst"));
  EXPECT_EQ(read("target.lst"), "old||\n");
  EXPECT_FALSE(readListFile(at("tmp/link.lst")).failure.isEmpty());
  EXPECT_EQ(writeListFile(at("tmp/default.lst"), {}).failure, QString());
  EXPECT_EQ(QFile::permissions(at("tmp/default.lst")) & 0x77, QFile::Permissions());
}
