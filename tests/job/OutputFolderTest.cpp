// The output folder before a run: what is removed, and what must never be.
#include "engine/job/OutputFolder.h"
#include "tests/support/Programs.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace folivex;
using namespace folivex::test;

namespace {

class OutputFolder : public testing::Test {
protected:
  OutputFolder() {
    QDir(folder()).mkpath("sub");
    for (const char* name : {"a.pdf", "b.txt", ".hidden", "sub/kept.pdf"}) {
      writeFile(at(name), "x");
    }
  }
  QString folder() const { return m_folder.path(); }
  QString at(const char* name) const { return m_folder.filePath(QString::fromUtf8(name)); }

  QTemporaryDir m_folder;
};

} // namespace

TEST_F(OutputFolder, FilesGoAndTheRestStays) {
  QTemporaryDir elsewhere;
  writeFile(elsewhere.filePath("target"), "mine");
  ASSERT_TRUE(QFile::link(elsewhere.filePath("target"), at("link.pdf")));
  ASSERT_TRUE(QFile::link(at("nowhere"), at("dangling")));
  QFile(at("a.pdf")).setPermissions(QFile::ReadOwner);
  ASSERT_TRUE(QFile::link(elsewhere.path(), at("folder link")));
  // A plan must foresee exactly what a run removes.
  QStringList foreseen = filesBelow(folder());
  foreseen.removeIf([this](const QString& name) {
    return isClearedWithFolder(folder(), {at("b.txt")}, folder() + '/' + name);
  });
  EXPECT_EQ(clearOutputFolder(folder(), {at("b.txt")}), QString());
  EXPECT_EQ(filesBelow(folder()), (QStringList{".hidden", "b.txt", "folder link", "sub/kept.pdf"}));
  EXPECT_EQ(foreseen, filesBelow(folder()));
  EXPECT_EQ(contentOf(elsewhere.filePath("target")), "mine");
}

TEST_F(OutputFolder, SourceOfTheRunStaysUnderAnyName) {
  ASSERT_TRUE(QFile::link(folder(), folder() + "-link"));
  for (const QString& name : {at("a.pdf"), at("sub/../a.pdf"), folder() + "-link/a.pdf"}) {
    SCOPED_TRACE(name.toStdString());
    EXPECT_EQ(clearOutputFolder(folder(), {name}), QString());
    EXPECT_TRUE(QFile::exists(at("a.pdf")));
    EXPECT_TRUE(isClearedWithFolder(folder(), {name}, at("b.txt")));
    EXPECT_FALSE(isClearedWithFolder(folder(), {name}, at("a.pdf")));
  }
  QFile::remove(folder() + "-link");
}

TEST_F(OutputFolder, ShortPathIsRefused) {
  const QString before = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(folder()));
  for (const char* path : {"", ".", "sub", "/tmp"}) {
    EXPECT_FALSE(clearOutputFolder(QString::fromUtf8(path), {}).isEmpty()) << path;
  }
  ASSERT_TRUE(QDir::setCurrent(before));
  EXPECT_EQ(filesBelow(folder()).size(), 4);
}
