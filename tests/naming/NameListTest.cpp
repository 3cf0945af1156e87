// Names from a list file.
#include "tests/naming/NamingBench.h"

#include <QFile>
#include <QTemporaryDir>

namespace folivex::test {
using namespace Qt::StringLiterals;

namespace {

class NamesFromList : public testing::Test {
protected:
  void writeList(const QByteArray& bytes) {
    QFile file(m_folder.filePath(u"names.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    m_bench.setup.reportUseFileList = file.fileName();
    m_bench.setup.extract = methodText(FileNameMethod::FileList);
    m_bench.setup.prefixFileName = u"p_"_s;
  }

  /// The names that `count` outputs get, without prefix and ending.
  QStringList names(int count) {
    OutputNamer namer = m_bench.namer();
    QStringList names;
    for (int i = 0; i < count; ++i) {
      const NamedOutput saved = namer.name(m_bench.range);
      m_states += saved.nameList;
      names += saved.path.sliced(7).chopped(4);
    }
    return names;
  }

  QTemporaryDir m_folder;
  NamingBench m_bench;
  QList<NameList::State> m_states;
};

using State = NameList::State;

TEST_F(NamesFromList, followTheLinesAndTellTheirEnd) {
  writeList("first\r\nsecond\r\r\n\r\n  \xC3\xA9t\xC3\xA9\nlast");
  EXPECT_EQ(names(6), QStringList({u"first"_s, u"second"_s, QString(), u"  été"_s, u"last"_s,
                                   u"NOT FOUND!!!"_s}))
      << "an empty line names its output too, else all others would be shifted";
  EXPECT_EQ(m_states.value(4), State::Line);
  EXPECT_EQ(m_states.value(5), State::Ended);
}

TEST_F(NamesFromList, areReadInOtherEncodings) {
  writeList("\xE9t\xE9\n");
  EXPECT_EQ(names(1), QStringList(u"été"_s));
  writeList("\xEF\xBB\xBFUNICODE\r\r\n\xC3\xA9t\xC3\xA9\r\r\n");
  EXPECT_EQ(names(2), QStringList({u"été"_s, u"NOT FOUND!!!"_s}));
  writeList("UNICODE Consortium\n");
  EXPECT_EQ(names(1), QStringList(u"UNICODE Consortium"_s));
}

TEST_F(NamesFromList, areAsHarmlessAsPageText) {
  writeList("../../x\n..\nc:\\nul\na\tb[MM]\n" + QByteArray(10'000, 'y') + "\nlast\n");
  m_bench.setup.stripEnd = 2;
  const QStringList found = names(6);
  EXPECT_EQ(found.first(4), QStringList({u"....x"_s, u".."_s, u"cnul"_s, u"ab[MM]"_s}));
  EXPECT_LE(found[4].size(), 255);
  EXPECT_EQ(found[5], u"last"_s) << "the rest of a long line became a name";
}

TEST_F(NamesFromList, goOnWithTheNextSource) {
  writeList("a\nb\n");
  OutputNamer namer = m_bench.namer();
  EXPECT_EQ(namer.name(m_bench.range).path, u"/out/p_a.pdf"_s);
  namer.startSource(u"/in/2.pdf"_s, u"/out"_s, 1);
  EXPECT_EQ(namer.name(m_bench.range).path, u"/out/p_b.pdf"_s);
}

TEST_F(NamesFromList, sayThatThereIsNoList) {
  writeList("a\n");
  for (const QString& path : {QString(), m_folder.path(), m_folder.filePath(u"missing"_s)}) {
    m_bench.setup.reportUseFileList = path;
    m_states.clear();
    EXPECT_EQ(names(2), QStringList({u"NOT FOUND!!!"_s, u"NOT FOUND!!!"_s}));
    EXPECT_EQ(m_states.value(1), State::NotOpened);
  }
}

} // namespace
} // namespace folivex::test
