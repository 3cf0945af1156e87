// Names from a list file.
#include "tests/naming/NamingBench.h"
#include "tests/support/Programs.h"

#include <QTemporaryDir>

namespace folivex::test {
using namespace Qt::StringLiterals;

namespace {

const QString noName = u"NOT FOUND!!!"_s;

class NamesFromList : public testing::Test {
protected:
  NamesFromList() {
    m_bench.setup.extract = methodText(FileNameMethod::FileList);
    m_bench.setup.prefixFileName = u"p_"_s;
    m_bench.setup.reportUseFileList = m_folder.filePath(u"names.txt"_s);
  }

  /// The names that `count` outputs get, without prefix and ending.
  QStringList names(int count) {
    OutputNamer namer = m_bench.namer();
    QStringList names;
    for (int i = 0; i < count; ++i) {
      const NamedOutput saved = namer.name(m_bench.range);
      m_last = saved.nameList;
      names += saved.path.sliced(7).chopped(4);
      namer.startSource(u"/in/next.pdf"_s, u"/out"_s, 1); // the list goes on
    }
    return names;
  }
  QStringList names(const QByteArray& list, int count) {
    writeFile(m_bench.setup.reportUseFileList, list);
    return names(count);
  }

  QTemporaryDir m_folder;
  NamingBench m_bench;
  NameList::State m_last = {};
};

TEST_F(NamesFromList, followTheLinesAndTellTheirEnd) {
  const QByteArray list = "first\r\nsecond\r\r\n\r\n  \xC3\xA9t\xC3\xA9\nlast";
  // An empty line names its output too, else all others would be shifted.
  const QStringList lines{u"first"_s, u"second"_s, QString(), u"  été"_s, u"last"_s};
  EXPECT_EQ(names(list, 5), lines);
  EXPECT_EQ(m_last, NameList::State::Line);
  EXPECT_EQ(names(list, 6), lines + QStringList{noName});
  EXPECT_EQ(m_last, NameList::State::Ended);
}

TEST_F(NamesFromList, areReadInOtherEncodings) {
  EXPECT_EQ(names("\xE9t\xE9\n", 1), QStringList(u"été"_s));
  EXPECT_EQ(names("\xEF\xBB\xBFUNICODE\r\r\n\xC3\xA9t\xC3\xA9\r\r\n", 2),
            QStringList({u"été"_s, noName}));
  EXPECT_EQ(names("UNICODE Consortium\n", 1), QStringList(u"UNICODE Consortium"_s));
}

TEST_F(NamesFromList, areAsHarmlessAsPageText) {
  m_bench.setup.stripEnd = 2;
  QStringList found =
      names("../../x\n..\nc:\\nul\na\tb[MM]\n" + QByteArray(10'000, 'y') + "\nlast\n", 6);
  EXPECT_LE(found.takeAt(4).size(), 255);
  EXPECT_EQ(found, QStringList({u"....x"_s, u".."_s, u"cnul"_s, u"ab[MM]"_s, u"last"_s}))
      << "the rest of a long line became a name";
}

TEST_F(NamesFromList, tellOfEachLineThatIsNoNameAsItStands) {
  names("UNICODE\ngood\na/b\n\n" + QByteArray(300, 'y') + "\nlast\n", 5);
  const QString start = m_bench.setup.reportUseFileList + u": line "_s;
  const QStringList found = m_bench.list.takeFindings();
  ASSERT_EQ(found.size(), 3) << found.join('\n').toStdString();
  EXPECT_EQ(found[0], start + u"3 cannot be a name as it stands (\"a/b\"); its output is "
                              "/out/p_ab.pdf"_s);
  EXPECT_EQ(found[1], start + u"4 is empty; its output is /out/p_.pdf"_s);
  EXPECT_TRUE(found[2].startsWith(start + u"5 cannot"_s)) << "cut and not told";
  EXPECT_TRUE(m_bench.list.takeFindings().isEmpty()) << "told twice";

  names(QByteArray("?\n").repeated(1000), 1000);
  EXPECT_EQ(m_bench.list.takeFindings().size(), 11) << "ten, and that there are more";
}

TEST_F(NamesFromList, areThereWhenTheListHasGone) {
  writeFile(m_bench.setup.reportUseFileList, "UNICODE\none\ntwo\n");
  OutputNamer namer = m_bench.namer();
  m_bench.list.readWhole();
  QFile::remove(m_bench.setup.reportUseFileList);
  EXPECT_EQ(namer.name(m_bench.range).path, u"/out/p_one.pdf"_s);
  EXPECT_EQ(namer.name(m_bench.range).path, u"/out/p_two.pdf"_s);
  EXPECT_EQ(namer.name(m_bench.range).nameList, NameList::State::Ended);
}

TEST_F(NamesFromList, sayThatThereIsNoList) {
  for (const QString& path : {QString(), m_folder.path(), m_folder.filePath(u"missing"_s)}) {
    m_bench.setup.reportUseFileList = path;
    EXPECT_EQ(names(2), QStringList({noName, noName}));
    EXPECT_EQ(m_last, NameList::State::NotOpened);
  }
}

} // namespace
} // namespace folivex::test
