// Paths of both systems, and folders that are not to be trusted.
#include "platform/Paths.h"
#include "tests/support/Programs.h"

#include <QTemporaryDir>

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
  const char* const rows[][3] = {{"/in/a.pdf", "/in", "a.pdf"},
                                 {"c:\\in\\a.pdf", "c:\\in", "a.pdf"},
                                 {"c:\\in/a.pdf", "c:\\in", "a.pdf"},
                                 {"/a.pdf", "/", "a.pdf"},
                                 {"c:\\a.pdf", "c:\\", "a.pdf"},
                                 {"a.pdf", "", "a.pdf"},
                                 {"/in/", "/in", ""}};
  for (const auto& [path, folder, title] : rows) {
    EXPECT_EQ(folderOf(path), folder) << path;
    EXPECT_EQ(fileTitle(path), title) << path;
  }
  EXPECT_EQ(joinPath("/", "a"), "/a");
  EXPECT_EQ(joinPath("", "a"), "a");
}

TEST(Paths, TextOfAPageChoosesNoFolder) {
  const char* const rows[][2] = {{"..", "_"},
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
  for (const auto& [text, component] : rows) {
    EXPECT_EQ(safePathComponent(text), QString(component));
  }
}

TEST(Paths, TemporaryFolder) {
  const QTemporaryDir home;
  const QString own = home.path() + QStringLiteral("/.cache/folivex/");
  const Variable homeVariable("HOME", QFile::encodeName(home.path()));
  const QString deep = home.path() + QStringLiteral("/") + QString(250, QLatin1Char('d'));
  ASSERT_TRUE(QDir().mkpath(deep));
  const auto isTaken = [](const QByteArray& tmpdir, const QString& folder) {
    const Variable variable("TMPDIR", tmpdir);
    return temporaryFolder() == folder && isInTemporaryFolder(folder + "x.lst") &&
           !isInTemporaryFolder(folder + "sub/x.lst");
  };
  EXPECT_TRUE(isTaken(QFile::encodeName(home.path()), home.path() + QLatin1Char('/')));
  EXPECT_TRUE(isTaken(QByteArray(), own));
  EXPECT_TRUE(isTaken("/no/such/folder", own));
  EXPECT_TRUE(isTaken(".", own)) << "a folder that moves with the process";
  EXPECT_TRUE(isTaken(QFile::encodeName(deep), own)) << "longer than its users hold";
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
