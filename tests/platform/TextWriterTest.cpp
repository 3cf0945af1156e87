// What TextWriter leaves on the disk, also when the disk or somebody else is in the way.
#include "platform/TextFile.h"
#include "tests/support/Programs.h"
#include "tests/support/Rows.h"
#include "tests/support/SmallDisk.h"

#include <QTemporaryDir>

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace folivex;
using namespace folivex::platform;
using namespace folivex::test;

namespace {

const QByteArray mark("\xEF\xBB\xBF");

class TextWriterTest : public testing::Test {
protected:
  QString at(const QString& name) const { return m_folder.filePath(name); }
  QTemporaryDir m_folder;
};

} // namespace

TEST_F(TextWriterTest, BytesOnDisk) {
  forEachRow("platform/written.json", [this](const SplitSetup&, const QStringList& row) {
    const QByteArray bytes = row[1].toUtf8();
    TextWriter writer;
    ASSERT_TRUE(writer.open(at("f")));
    EXPECT_EQ(writer.write(row[0]), row[0].size()) << "characters, not bytes";
    EXPECT_EQ(writer.position(), mark.size() + bytes.size());
    ASSERT_TRUE(writer.close());
    EXPECT_EQ(contentOf(at("f")), mark + bytes);
  });
}

TEST_F(TextWriterTest, TakesALineBackWhetherFlushedOrNot) {
  const QString line = QString::fromUtf8("Müller €\r\n");
  for (const bool flushed : {false, true}) {
    TextWriter writer;
    ASSERT_TRUE(writer.open(at("f")));
    writer.write(line);
    const qint64 second = writer.position();
    writer.write(QString(200'000, QLatin1Char('x')));
    EXPECT_FALSE(writer.truncateTo(writer.position() + 1)) << "ahead of the end";
    EXPECT_TRUE(!flushed || writer.flush());
    ASSERT_TRUE(writer.truncateTo(second));
    writer.write(QStringLiteral("b"));
    ASSERT_TRUE(writer.close());
    EXPECT_EQ(contentOf(at("f")), mark + "Müller €\r\r\nb");
  }
}

TEST_F(TextWriterTest, NullDeviceTakesEverythingAndMakesNoFile) {
  const QString folder = QDir::currentPath();
  QDir::setCurrent(m_folder.path());
  for (const char* const name : {"nul", "NUL ", "/dev/null"}) {
    TextWriter writer;
    ASSERT_TRUE(writer.open(QString::fromLatin1(name))) << name;
    EXPECT_EQ(writer.write(QStringLiteral("abc")), 3);
    EXPECT_TRUE(writer.flush());
    EXPECT_TRUE(writer.truncateTo(writer.position()));
    EXPECT_TRUE(writer.close());
  }
  EXPECT_EQ(filesBelow(m_folder.path()), QStringList());
  QDir::setCurrent(folder);
}

TEST_F(TextWriterTest, FullDiskIsToldAndRemembered) {
  TextWriter device;
  ASSERT_TRUE(device.open(QStringLiteral("/dev/full")));
  EXPECT_EQ(device.write(QStringLiteral("fits the buffer")), 15);
  EXPECT_FALSE(device.close()) << "the buffer's fate is known only here";

  const SmallDisk full(1000);
  TextWriter writer;
  ASSERT_TRUE(writer.open(at("f")));
  EXPECT_EQ(writer.write(QString(100'000, QLatin1Char('x'))), -1);
  EXPECT_EQ(writer.write(QStringLiteral("y")), -1) << "a hole in the middle of a file";
  EXPECT_FALSE(writer.flush());
  EXPECT_FALSE(writer.close());
  EXPECT_FALSE(writer.errorText().isEmpty());
}

TEST_F(TextWriterTest, ReplacementLeavesTheOldFileUntilItIsWhole) {
  writeFile(at("f"), "old");
  {
    TextWriter dropped;
    ASSERT_TRUE(dropped.openReplacement(at("f")));
    dropped.write(QStringLiteral("new"));
    EXPECT_EQ(contentOf(at("f")), "old");
  }
  EXPECT_EQ(contentOf(at("f")), "old");
  {
    const SmallDisk full(1000);
    TextWriter failed;
    ASSERT_TRUE(failed.openReplacement(at("f")));
    failed.write(QString(2000, QLatin1Char('x')));
    EXPECT_FALSE(failed.close());
  }
  EXPECT_EQ(contentOf(at("f")), "old");
  EXPECT_EQ(filesBelow(m_folder.path()), QStringList({"f"})) << "parts left behind";

  TextWriter writer;
  ASSERT_TRUE(writer.openReplacement(at("f ")));
  writer.write(QStringLiteral("new"));
  ASSERT_TRUE(writer.close());
  EXPECT_EQ(contentOf(at("f")), mark + "new");
  EXPECT_EQ(filesBelow(m_folder.path()), QStringList({"f"}));
}

TEST_F(TextWriterTest, ReplacementKeepsLinkAndPermissions) {
  writeFile(at("real"), "old");
  ASSERT_EQ(chmod(QFile::encodeName(at("real")).constData(), 0640), 0);
  ASSERT_TRUE(QFile::link(QStringLiteral("real"), at("link")));
  TextWriter writer;
  ASSERT_TRUE(writer.openReplacement(at("link"), FileAccess::Confidential));
  writer.write(QStringLiteral("new"));
  ASSERT_TRUE(writer.close());
  EXPECT_TRUE(QFileInfo(at("link")).isSymLink());
  EXPECT_EQ(contentOf(at("real")), mark + "new");
  EXPECT_EQ(modeOf(at("real")), 0640U);
}

TEST_F(TextWriterTest, SecretsAreMadeForTheirOwnerAlone) {
  const mode_t old = umask(0);
  TextWriter writer;
  ASSERT_TRUE(writer.open(at("ordinary")));
  ASSERT_TRUE(writer.open(at("confidential"), FileAccess::Confidential));
  ASSERT_TRUE(writer.open(at("private"), FileAccess::Private));
  ASSERT_TRUE(writer.openReplacement(at("aside"), FileAccess::Confidential));
  ASSERT_TRUE(writer.close());
  writeFile(at("wide"), "old");
  ASSERT_TRUE(writer.open(at("wide"), FileAccess::Private));
  ASSERT_TRUE(writer.close());
  umask(old);
  EXPECT_EQ(modeOf(at("ordinary")), 0666U);
  for (const char* const name : {"confidential", "private", "aside", "wide"}) {
    EXPECT_EQ(modeOf(at(QString::fromLatin1(name))), 0600U) << name;
  }
}

TEST_F(TextWriterTest, PlantedFilesAreRefusedAndUnharmed) {
  writeFile(at("victim"), "precious");
  ASSERT_TRUE(QFile::link(at("victim"), at("link")));
  ASSERT_EQ(link(QFile::encodeName(at("victim")).constData(),
                 QFile::encodeName(at("hardlink")).constData()),
            0);
  ASSERT_EQ(mkfifo(QFile::encodeName(at("pipe")).constData(), 0600), 0);
  QStringList planted = {at("link"), at("hardlink"), at("pipe"), m_folder.path()};
  if (geteuid() == 0) {
    writeFile(at("foreign"), "precious");
    ASSERT_EQ(chown(QFile::encodeName(at("foreign")).constData(), 65534, 65534), 0);
    planted += at("foreign");
  } else {
    planted += QStringLiteral("/etc/passwd");
  }
  for (const QString& path : planted) {
    SCOPED_TRACE(path.toStdString());
    EXPECT_FALSE(isTrustedPrivateFile(path));
    TextWriter writer;
    EXPECT_FALSE(writer.open(path, FileAccess::Private));
    EXPECT_FALSE(writer.errorText().isEmpty());
    EXPECT_FALSE(writer.openReplacement(path, FileAccess::Private));
    TextReader reader;
    EXPECT_FALSE(reader.open(path, FileAccess::Private));
    EXPECT_EQ(reader.error(), FileError::Refused);
  }
  EXPECT_EQ(contentOf(at("victim")), "precious");
  EXPECT_TRUE(isTrustedPrivateFile(at("nothing there yet")));
}

TEST_F(TextWriterTest, KilledWriterLeavesNothing) {
  writeFile(at("old"), "old");
  for (const char* const name : {"old", "new"}) {
    const pid_t child = fork();
    if (child == 0) {
      TextWriter writer;
      static_cast<void>(writer.openReplacement(at(name), FileAccess::Private));
      writer.write(QStringLiteral("s3cret"));
      writer.flush();
      kill(getpid(), SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
  }
  EXPECT_EQ(filesBelow(m_folder.path()), QStringList("old"));
  EXPECT_EQ(contentOf(at("old")), "old");
}
