// Paths of both systems, and folders that are not to be trusted.
#include "platform/Paths.h"
#include "tests/support/Programs.h"
#include "tests/support/Rows.h"

#include <QTemporaryDir>

#include <sys/stat.h>

using namespace folivex::platform;
using namespace folivex;
using namespace folivex::test;

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
  forEachRow("platform/paths.json", [](const SplitSetup&, const QStringList& row) {
    EXPECT_EQ(folderOf(row[0]), row[1]);
    EXPECT_EQ(fileTitle(row[0]), row[2]);
  });
  EXPECT_EQ(joinPath("/", "a"), "/a");
  EXPECT_EQ(joinPath("", "a"), "a");
}

TEST(Paths, TextOfAPageChoosesNoFolder) {
  forEachRow("platform/components.json", [](const SplitSetup&, const QStringList& row) {
    EXPECT_EQ(safePathComponent(row[0]), row[1]);
  });
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
