// Text from a page, a list or a source's name that would like to be more than a name.
#include "tests/naming/NamingBench.h"
#include "tests/support/StoredInputs.h"

#include <QFile>
#include <QTemporaryDir>

namespace folivex::test {
using namespace Qt::StringLiterals;

namespace {

class HarmlessName : public testing::TestWithParam<NameRow> {};

TEST_P(HarmlessName, staysInsideTheOutputFolder) {
  NamingBench bench;
  GetParam().arrange(bench);
  EXPECT_EQ(bench.path(), GetParam().path);
}

auto found(const QString& matched, const QString& prefix = {}, const QString& postfix = {}) {
  return [=](NamingBench& bench) {
    bench.range.rangeText = matched;
    bench.setup.prefixFileName = prefix;
    bench.setup.postfixFileName = postfix;
    bench.words.words = {{1, u"[MM]"_s}, {2, u".."_s}, {3, u"a/../b"_s}};
  };
}

const QString asFolder = QStringLiteral("[EXTRACTTEXTDIR]\\");

INSTANTIATE_TEST_SUITE_P(
    Texts, HarmlessName,
    testing::Values(
        NameRow{"pathIsClimbed", found(u"../../etc/passwd"_s), "_....etcpasswd.pdf"},
        NameRow{"hiddenFile", found(u".47"_s), "_.47.pdf"},
        NameRow{"hiddenFileFromPrefix", found(u".47"_s, u"[EXTRACTTEXT]-"_s), "_.47-.47.pdf"},
        NameRow{"hiddenFolder", found(u".47"_s, asFolder + u'x'), "_.47/x.47.pdf"},
        NameRow{"hiddenAsTyped", found(u"A"_s, u".x"_s), ".xA.pdf"},
        NameRow{"parentFolder", found(u".."_s, asFolder), "_/_...pdf"},
        NameRow{"thisFolder", found(u"."_s, u"[EXTRACTTEXT]/x"_s), "_/x..pdf"},
        NameRow{"parentFolderFromTwoHalves", found(u"."_s, u".[EXTRACTTEXT]/"_s), "_/_..pdf"},
        NameRow{"parentFolderFromWord", found(u"A"_s, u"[POS1,2]/"_s), "_/A.pdf"},
        NameRow{"parentFolderFromPostfix", found(u".."_s, {}, u"/x"_s), "_/x.pdf"},
        NameRow{"separatorsInWord", found(u"A"_s, u"[POS1,3]/"_s), "a..b/A.pdf"},
        NameRow{"separatorInsideToken", found(u".."_s, u"[POS1/1,2]/[EXTRACTTEXT]/"_s),
                "_/_/_...pdf"},
        NameRow{"folderEndsInDotsAndBlanks", found(u"ACME. ."_s, asFolder), "ACME/ACME. ..pdf"},
        NameRow{"folderIsDevice", found(u"nul"_s, asFolder), "_nul/_nul.pdf"},
        NameRow{"fileIsDeviceWithEnding", found(u"Com1.txt"_s), "_Com1.txt.pdf"},
        NameRow{"deviceFromTwoHalves", found(u"N"_s, u"co"_s), "_coN.pdf"},
        NameRow{"emptyFolderIsRoot", found(u"\u202E"_s, asFolder), "unnamed.pdf"},
        NameRow{"onlyBlanks", found(u"  "_s), "unnamed.pdf"},
        NameRow{"textIsTurned", found(u"\u202Egpj\u2066x\u2069.exe\u200F"_s), "gpjx.exe.pdf"},
        NameRow{"halfCharacters", found(QChar(0xD83D) + u"a"_s + QChar(0xDE00)), "a.pdf"},
        NameRow{"nulEndsName", found(u"a"_s + QChar(0) + u'b'), "ab.pdf"},
        NameRow{"matchedTextIsToken",
                found(u"[FILETITLE][EXTRACTTEXT][MM]"_s, u"[EXTRACTTEXT]_[DD]_"_s, u"[YY]"_s),
                "[FILETITLE][EXTRACTTEXT][MM]_09_[FILETITLE][EXTRACTTEXT][MM][YY].pdf"},
        NameRow{"wordIsToken", found(u"A"_s, u"[POS1,1][D]"_s), "[MM]9A.pdf"},
        NameRow{"wordAsksForTime", found(u"A"_s, u"[POS1,1][YY]"_s), "[MM][YY]A.pdf"},
        NameRow{"textAsksForWord", found(u"[POS1,2]"_s, u"[EXTRACTTEXT]"_s),
                "[POS1,2][POS1,2].pdf"},
        NameRow{"marksAreTyped", found(u"A"_s, u"x"_s + QChar(0xFDD0) + QChar(0xFDD1) + u"[DD]"_s),
                "x09A.pdf"},
        NameRow{"titleIsParentFolder",
                [](NamingBench& bench) {
                  bench.source = u"/in/...pdf"_s;
                  bench.setup.prefixFileName = u"[FILETITLE]/"_s;
                },
                "_/ACME.pdf"},
        NameRow{"titleHoldsWhatWindowsRefuses",
                [](NamingBench& bench) {
                  bench.source = u"/in/12:30?\u202E.pdf"_s;
                  bench.setup.useSourceFileName = true;
                },
                "1230ACME.pdf"}),
    faultOf);

INSTANTIATE_TEST_SUITE_P(
    TypedFolders, HarmlessName,
    testing::Values(
        NameRow{"separatorIsNotTheSystems", found(u"A"_s, u"sub\\deep/x_"_s), "sub/deep/x_A.pdf"},
        NameRow{"leadingSeparatorIsRoot", found(u"A"_s, u"//sub//"_s), "sub/A.pdf"},
        NameRow{"typedFolderIsChanged", found(u"A"_s, u"../aux/[DD]/"_s), "../aux/09/A.pdf"},
        NameRow{"postfixFolderIsLost", found(u"A"_s, {}, u"_x/y_[DD]"_s), "A_x/y_09.pdf"},
        NameRow{"characterWindowsRefuses", found(u"A"_s, u"[hh]:[mm]*\t_"_s), "0805_A.pdf"}),
    faultOf);

TEST(FolderToMake, isTheOneThatThePathNames) {
  for (const QString& text : {u"ACME"_s, u".."_s, u"CON"_s, u"a. "_s, QString(300, u'€')}) {
    NamingBench bench;
    found(text, asFolder)(bench);
    bench.setup.stripEnd = 1;
    const NamedOutput named = bench.named();
    EXPECT_TRUE(named.path.startsWith(named.folderToMake + u'/')) << text.toStdString();
    EXPECT_TRUE(named.folderToMake.startsWith(u"/out/"_s)) << text.toStdString();
    EXPECT_EQ(named.folderToMake.count(u'/'), 2) << text.toStdString();
  }
  NamingBench bench;
  found({}, asFolder)(bench);
  EXPECT_EQ(bench.named().folderToMake, QString());
  found(u"ACME"_s, u"[EXTRACTTEXT]/"_s)(bench);
  EXPECT_EQ(bench.named().folderToMake, QString());
}

struct LongName {
  const char* fault;
  QString prefix;
  QString text;
  QString postfix;
  FileNameMethod method = FileNameMethod::MatchedWord;
};

/// Names the output and makes a file of the name, with a part number of five digits.
QString nameThatFits(const LongName& row) {
  const QTemporaryDir folder;
  NamingBench bench;
  bench.setup.prefixFileName = row.prefix;
  bench.setup.postfixFileName = row.postfix;
  bench.setup.extract = methodText(row.method);
  bench.range.rangeText = row.text;
  OutputNamer namer = bench.namer();
  namer.startSource(bench.source, folder.path(), 12);
  const QString path = namer.name(bench.range).path;
  QFile file(path.chopped(4) + u"_part12345.pdf"_s);
  EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << row.fault << file.errorString().toStdString();
  return path.sliced(folder.path().size() + 1);
}

TEST(LongNames, fitAndKeepWhatTellsThemApart) {
  const QString wide(4000, u'€');
  QString name = nameThatFits({"wideCharacters", u"p_"_s, wide, u"_END"_s});
  EXPECT_TRUE(name.startsWith(u"p_€€"_s) && name.endsWith(u"€_END.pdf"_s));
  EXPECT_GT(name.toUtf8().size(), 230);

  name = nameThatFits(
      {"numberIsCut", u"[EXTRACTTEXT]_"_s, wide, {}, FileNameMethod::SequentialNumber});
  EXPECT_TRUE(name.endsWith(u"000001.pdf"_s));

  name = nameThatFits({"postfixAloneIsTooLong", {}, u"A"_s, QString(256, u'€')});
  EXPECT_TRUE(name.endsWith(u"€.pdf"_s));

  // 240 bytes: 59 faces of four bytes, then a letter whose accent would not fit.
  QString faces;
  for (int i = 0; i < 59; ++i) {
    faces += u"😀"_s;
  }
  name = nameThatFits({"letterLosesAccent", u"123"_s, faces + u"e\u0301x"_s, {}});
  EXPECT_EQ(name, u"123"_s + faces + u".pdf"_s);
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
  EXPECT_EQ(bench.path(), "extract_.pdf") << "no room at all is for the writer to tell";
}

TEST(StoredInputs, giveHarmlessNames) {
  runStoredInputs("naming_template");
}

} // namespace
} // namespace folivex::test
