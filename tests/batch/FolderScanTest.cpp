// The folder scan over real trees: what it takes, links, depth, Stop.
#include "batch/BatchCommands.h"
#include "tests/batch/BatchBench.h"

#include <QRegularExpression>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace folivex;
using namespace folivex::testing;

namespace {

class Watcher : public FolderScanWatcher {
public:
  void showPlace(const QString& path) override { places += path; }
  void handlePendingEvents() override {
    if (onEvents) {
      onEvents();
    }
  }
  bool stopRequested() const override { return stop(); }

  QStringList places;
  std::function<void()> onEvents;
  std::function<bool()> stop = [] { return false; };
};

class Scan : public BatchBench {
protected:
  ScanResult scan(const QString& name, std::chrono::milliseconds turns = FolderScan::betweenTurns) {
    return FolderScan(m_rows, m_watcher, turns).run(at(name));
  }
  /// Sorted, since the file system has an order of its own.
  QStringList found() const {
    QStringList all = texts(m_rows.all()).replaceInStrings("Yes " + at("in/"), "");
    all.sort();
    return all;
  }

  BatchEntries m_rows;
  Watcher m_watcher;
};

/// Permissions mean something to everybody but the superuser.
class AsNobody {
public:
  AsNobody() : m_before(geteuid()) {
    if (m_before == 0) {
      EXPECT_EQ(seteuid(65534), 0);
    }
  }
  ~AsNobody() { EXPECT_EQ(seteuid(m_before), 0); }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;

private:
  uid_t m_before;
};

} // namespace

TEST_F(Scan, TakesWhatTheNameSays) {
  for (const char* name : {"a.pdf", "a.pdf.bak", "A.PDF", "notes.txt", ".hidden.pdf", "sub/x.pdf",
                           "sub/deeper/y.pdf", ".git/z.pdf", "folder.pdf/q.pdf"}) {
    write(QString("in/") + name);
  }
  QDir(at("in")).mkdir("empty.pdf");
  EXPECT_EQ(scan("in").added, 6);
  const QStringList names = {".hidden.pdf",      "a.pdf",    "a.pdf.bak", "folder.pdf/q.pdf",
                             "sub/deeper/y.pdf", "sub/x.pdf"};
  EXPECT_EQ(found(), names);
  // Once more: nothing is left out for being there already.
  EXPECT_EQ(scan("in").added, 6);
}

TEST_F(Scan, LinksAreFollowedOnce) {
  write("in/sub/a.pdf");
  write("outside/b.pdf");
  for (const auto& [target, name] : {std::pair(".", "in/self"),
                                     {"..", "in/sub/up"},
                                     {"../in", "in/round"},
                                     {"..", "in/above"},
                                     {"/", "in/sub/root"},
                                     {"../outside", "in/one"},
                                     {"../../outside", "in/sub/two"},
                                     {"nowhere", "in/broken.pdf"},
                                     {"sub/a.pdf", "in/file.pdf"},
                                     {"loop.pdf", "in/loop.pdf"}}) {
    ASSERT_EQ(symlink(target, QFile::encodeName(at(name)).constData()), 0);
  }
  write("above.pdf"); // a link leads there, but from a folder that lies in it
  const ScanResult result = scan("in");
  EXPECT_EQ(found().replaceInStrings(QRegularExpression(".*/"), ""),
            (QStringList{"broken.pdf", "file.pdf", "loop.pdf", "b.pdf", "a.pdf"}));
  EXPECT_EQ(result.unreadableFolders, 0);
  EXPECT_EQ(result.noFiles, 2);
}

TEST_F(Scan, WhatNoRunCanOpenIsAddedAndTold) {
  write("in/a.pdf");
  write("in/b.txt");
  ASSERT_EQ(mkfifo(QFile::encodeName(at("in/pipe.pdf")).constData(), 0600), 0);
  const QByteArray name = QFile::encodeName(at("in/")) + "r\xe9sum\xe9.pdf"; // not UTF-8
  const int file = open(name.constData(), O_CREAT | O_WRONLY, 0600);
  ASSERT_GE(file, 0);
  close(file);
  const ScanResult result = scan("in");
  EXPECT_EQ(result.added, 3);
  EXPECT_EQ(result.noFiles, 2);
  unlink(name.constData()); // by its bytes: no text names it
  const QString notice = BatchCommands::scanNotice({at("in")}, result);
  EXPECT_TRUE(notice.contains("2 files of them cannot be opened: ") &&
              notice.contains(at("in/pipe.pdf")))
      << notice.toStdString();
}

TEST_F(Scan, DeeperThanFilesCanBeOpen) {
  // Most of the folders have files behind the next folder, in whatever order the file system
  // tells them: they are not read to their ends when the scan goes down.
  QString folder = "in/";
  for (int level = 0; level < 150; ++level, folder += QString::number(level) + '/') {
    for (const char* name : {"a.txt", "b.txt", "c.txt"}) {
      write(folder + name);
    }
  }
  write(folder + "x.pdf");
  write("in/last.pdf");
  rlimit before = {};
  getrlimit(RLIMIT_NOFILE, &before);
  rlimit few = before;
  few.rlim_cur = 64;
  setrlimit(RLIMIT_NOFILE, &few);
  const ScanResult result = scan("in");
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(result.added, 2);
  EXPECT_EQ(result.unreadableFolders, 0);
}

TEST_F(Scan, FoldersThatCannotBeReadAreTold) {
  write("in/a.pdf");
  for (const char* name : {"in/no1", "in/no2", "in/no3", "in/no4"}) {
    QDir(m_folder.path()).mkdir(name);
    chmod(QFile::encodeName(at(name)).constData(), 0);
  }
  chmod(QFile::encodeName(m_folder.path()).constData(), 0755);
  ScanResult result;
  {
    const AsNobody nobody;
    result = scan("in");
  }
  EXPECT_EQ(result.added, 1);
  EXPECT_EQ(result.unreadableFolders, 4);
  EXPECT_EQ(result.unreadable.size(), 3);
  EXPECT_TRUE(result.unreadable.at(0).startsWith(at("in/no")));
  result += scan("gone");
  EXPECT_EQ(result.unreadableFolders, 5);
  EXPECT_EQ(result.unreadable.size(), 3);
}

TEST_F(Scan, StopKeepsWhatWasFound) {
  for (int i = 0; i < 1500; ++i) {
    write(QStringLiteral("in/%1.pdf").arg(i));
  }
  m_watcher.stop = [this] { return m_rows.count() > 0; };
  const ScanResult result = scan("in", std::chrono::hours(1));
  EXPECT_TRUE(result.stopped);
  EXPECT_EQ(result.added, static_cast<int>(FolderScan::blockSize));
  EXPECT_EQ(m_rows.count(), result.added);
  // Before the first file, too.
  m_rows.clear();
  bool stop = false;
  m_watcher.stop = [&] { return stop; };
  m_watcher.onEvents = [&] { stop = true; };
  EXPECT_TRUE(scan("in").stopped);
  EXPECT_EQ(m_rows.count(), 0);
}

TEST_F(Scan, ListGrowsFromTurnToTurn) {
  for (const char* name : {"in/a.pdf", "in/b.pdf", "in/c.pdf"}) {
    write(name);
  }
  QList<int> counts;
  m_watcher.onEvents = [&] { counts += m_rows.count(); };
  scan("in", std::chrono::milliseconds(0));
  EXPECT_EQ(counts, (QList<int>{0, 0, 1, 2}));
  EXPECT_EQ(m_watcher.places.at(0), at("in"));
  EXPECT_EQ(m_watcher.places.at(3), m_rows.path(2));
}
