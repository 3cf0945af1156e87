// Paths of both systems, and folders that are not to be trusted.
#include "platform/Paths.h"
#include "tests/support/Programs.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace folivex::platform;
using folivex::test::modeOf;

namespace {

/// Sets a variable of the environment as long as it lives; a null value takes it away.
class Variable {
public:
  Variable(const char* name, const QByteArray& value) : m_name(name), m_old(qgetenv(name)) {
    value.isNull() ? qunsetenv(name) : qputenv(name, value);
  }
  ~Variable() { m_old.isNull() ? qunsetenv(m_name) : qputenv(m_name, m_old); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

private:
  const char* m_name;
  QByteArray m_old;
};

} // namespace

TEST(Paths, TakenApart) {
  struct Row {
    const char* path;
    const char* folder;
    const char* title;
  };
  const Row rows[] = {{"/in/a.pdf", "/in", "a.pdf"},
                      {"c:\\in\\a.pdf", "c:\\in", "a.pdf"},
                      {"c:\\in/a.pdf", "c:\\in", "a.pdf"},
                      {"/a.pdf", "/", "a.pdf"},
                      {"c:\\a.pdf", "c:\\", "a.pdf"},
                      {"a.pdf", "", "a.pdf"},
                      {"/in/", "/in", ""},
                      {"", "", ""}};
  for (const Row& row : rows) {
    const QString path = QString::fromLatin1(row.path);
    EXPECT_EQ(folderOf(path).toStdString(), row.folder) << row.path;
    EXPECT_EQ(fileTitle(path).toStdString(), row.title) << row.path;
  }
  EXPECT_EQ(joinPath(QStringLiteral("/"), QStringLiteral("a")).toStdString(), "/a");
  EXPECT_EQ(joinPath(QString(), QStringLiteral("a")).toStdString(), "a");
}

TEST(Paths, TextOfAPageChoosesNoFolder) {
  struct Row {
    const char* text;
    const char* component;
  };
  const Row rows[] = {{"..", "_"},
                      {".", "_"},
                      {"", "_"},
                      {"../../etc/passwd", ".._.._etc_passwd"},
                      {"..\\x", ".._x"},
                      {"ACME. . ", "ACME"},
                      {"a\nb", "a_b"},
                      {"CON", "_CON"},
                      {"nul.pdf", "_nul.pdf"},
                      {"com1 .txt", "_com1 .txt"},
                      {"console", "console"},
                      {"Müller GmbH", "Müller GmbH"}};
  for (const Row& row : rows) {
    EXPECT_EQ(safePathComponent(QString::fromUtf8(row.text)).toStdString(), row.component);
  }
}

TEST(Paths, TemporaryFolder) {
  const QTemporaryDir home;
  const QString own = home.path() + QStringLiteral("/.cache/folivex/");
  const Variable homeVariable("HOME", QFile::encodeName(home.path()));
  const QString deep = home.path() + QStringLiteral("/") + QString(250, QLatin1Char('d'));
  ASSERT_TRUE(QDir().mkpath(deep));
  struct Row {
    const char* fault;
    QByteArray tmpdir;
    QString folder;
  };
  const Row rows[] = {{"not taken from the environment", QFile::encodeName(home.path()),
                       home.path() + QLatin1Char('/')},
                      {"no folder of one's own", QByteArray(), own},
                      {"a folder that is not there", "/no/such/folder", own},
                      {"a folder that moves with the process", ".", own},
                      {"a name longer than its users hold", QFile::encodeName(deep), own}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    const Variable tmpdir("TMPDIR", row.tmpdir);
    EXPECT_EQ(temporaryFolder().toStdString(), row.folder.toStdString());
    EXPECT_TRUE(isInTemporaryFolder(row.folder + QStringLiteral("x.lst")));
    EXPECT_FALSE(isInTemporaryFolder(row.folder + QStringLiteral("sub/x.lst")));
  }
}

TEST(Paths, PrivateFolderIsOnesOwn) {
  const QTemporaryDir home;
  const Variable homeVariable("HOME", QFile::encodeName(home.path()));
  const Variable tmpdir("TMPDIR", QByteArray());
  const QString own = temporaryFolder();
  ASSERT_FALSE(own.isEmpty());
  EXPECT_EQ(modeOf(own), 0700U);
  ASSERT_EQ(chmod(QFile::encodeName(own).constData(), 0777), 0);
  EXPECT_EQ(temporaryFolder(), own);
  EXPECT_EQ(modeOf(own), 0700U) << "others were let in once and stay";

  ASSERT_TRUE(QDir().rmdir(own));
  const QTemporaryDir elsewhere;
  ASSERT_TRUE(QFile::link(elsewhere.path(), own.chopped(1)));
  EXPECT_EQ(temporaryFolder().toStdString(), "") << "a link leads anywhere";
}
