// What the outputs are called, also where text from a page, a list or a source's name would like to
// be more than a name.
#include "tests/naming/NamingBench.h"

#include <QTemporaryDir>

namespace folivex::test {
using namespace Qt::StringLiterals;
using enum FileNameMethod;

namespace {

TEST(OutputNamer, Names) {
  forEachRow("naming/names.json", [](const SplitSetup& setup, const QStringList& row) {
    NamingBench bench;
    bench.setup = setup;
    bench.range.rangeText = row[0];
    bench.range.restOfLine = row.value(2);
    EXPECT_EQ(bench.path(), row[1]);
  });
  NamingBench half;
  half.range.rangeText = QChar(0xD83D) + u"a"_s + QChar(0xDE00);
  EXPECT_EQ(half.path(), u"extract_a.pdf"_s) << "half characters";
}

TEST(OutputNamer, asksForTheFirstPlannedPageAndReadsRanges) {
  NamingBench bench;
  bench.setup.prefixFileName = u"[POS100-120,400]"_s;
  bench.setup.postfixFileName = u"[POS-5--1, 7-x][POSa]"_s;
  bench.setup.offsetFirst = 1;
  bench.named();
  EXPECT_EQ(bench.words.asked, u"p2 h100-120 v400-400;p2 h-5--1 v7-0;p2 h0-0 v0-0;"_s);
}

TEST(OutputNamer, countsOutputsOfOneSourceAndTakesTokensAnew) {
  NamingBench bench;
  bench.setup.extract = methodText(SequentialNumber);
  bench.setup.prefixFileName = u"[PAGESTARTNOMASK]_"_s;
  OutputNamer namer = bench.namer();
  EXPECT_EQ(namer.name(bench.range).path, u"/out/3_000001.pdf"_s);
  bench.range.firstPage = bench.range.lastPage = 7;
  EXPECT_EQ(namer.name(bench.range).path, u"/out/8_000002.pdf"_s);
  namer.startSource(u"/in/next.pdf"_s, u"/other/"_s, 1);
  EXPECT_EQ(namer.name(bench.range).path, u"/other/8_000001.pdf"_s);
}

TEST(OutputNamer, tellsTheTextsThatItUsed) {
  NamingBench bench;
  bench.setup.stripEnd = 1;
  bench.range.rangeText = u"AC/ME"_s;
  bench.range.restOfLine = QString(2000, u'r') + u':';
  NamedOutput named = bench.named();
  EXPECT_EQ(named.cleanedText, u"ACM"_s);
  EXPECT_EQ(named.cleanedRestOfLine, QString(1024, u'r'));
  bench.setup.extract = methodText(AfterTextRestOfLine);
  named = bench.named();
  EXPECT_EQ(named.cleanedText, QString(254, u'r')) << "the rest of the line is the matched text";
}

TEST(FolderToMake, isTheOneThatThePathNames) {
  NamingBench bench;
  bench.setup.stripEnd = 1;
  bench.setup.prefixFileName = u"[EXTRACTTEXTDIR]\\"_s;
  for (const QString& text : {u"ACME"_s, u".."_s, u"CON"_s, u"a. "_s, QString(300, u'€')}) {
    bench.range.rangeText = text;
    const NamedOutput named = bench.named();
    EXPECT_TRUE(named.path.startsWith(named.folderToMake + u'/')) << text.toStdString();
    EXPECT_TRUE(named.folderToMake.startsWith(u"/out/"_s)) << text.toStdString();
    EXPECT_EQ(named.folderToMake.count(u'/'), 2) << text.toStdString();
  }
  bench.range.rangeText.clear();
  EXPECT_EQ(bench.named().folderToMake, QString());
  bench.range.rangeText = u"ACME"_s;
  bench.setup.prefixFileName = u"[EXTRACTTEXT]/"_s;
  EXPECT_EQ(bench.named().folderToMake, QString());
}

/// Names the output and makes a file of the name, with a part number of five digits.
QString nameThatFits(const QString& prefix, const QString& text, const QString& postfix,
                     FileNameMethod method = MatchedWord) {
  const QTemporaryDir folder;
  NamingBench bench;
  bench.setup.prefixFileName = prefix;
  bench.setup.postfixFileName = postfix;
  bench.setup.extract = methodText(method);
  bench.range.rangeText = text;
  const QString path = bench.namer(folder.path()).name(bench.range).path;
  QFile file(path.chopped(4) + u"_part12345.pdf"_s);
  EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << file.errorString().toStdString();
  return path.sliced(folder.path().size() + 1);
}

TEST(LongNames, fitAndKeepWhatTellsThemApart) {
  const QString wide(4000, u'€');
  const QString name = nameThatFits(u"p_"_s, wide, u"_END"_s);
  EXPECT_TRUE(name.startsWith(u"p_€€"_s) && name.endsWith(u"€_END.pdf"_s));
  EXPECT_GT(name.toUtf8().size(), 230);
  EXPECT_EQ(nameThatFits({}, QString(300, u'a'), {}), QString(240, u'a') + u".pdf"_s);
  EXPECT_TRUE(
      nameThatFits(u"[EXTRACTTEXT]_"_s, wide, {}, SequentialNumber).endsWith(u"000001.pdf"_s))
      << "the number is cut";
  EXPECT_TRUE(nameThatFits({}, u"A"_s, QString(256, u'€')).endsWith(u"€.pdf"_s));
  // 240 bytes: 59 faces of four bytes, then a letter whose accent would not fit.
  const QString faces = u"😀"_s.repeated(59);
  EXPECT_EQ(nameThatFits(u"123"_s, faces + u"e\u0301x"_s, {}), u"123"_s + faces + u".pdf"_s);
}

TEST(LongNames, shrinkWithTheRoomThatThePathLeaves) {
  NamingBench bench;
  bench.rules.unit = FileSystemRules::Unit::Utf16Units;
  bench.rules.pathLimit = 100;
  bench.range.rangeText = QString(4000, u'€');
  const QString path = bench.named().path;
  EXPECT_LE(path.size() + 10, 100);
  EXPECT_GE(path.size(), 80);
  bench.rules.pathLimit = 3;
  EXPECT_EQ(bench.path(), u"extract_.pdf"_s) << "no room at all is for the writer to tell";
}

} // namespace
} // namespace folivex::test
