// What the outputs are called.
#include "tests/naming/NamingBench.h"

#include <climits>

namespace folivex::test {
using namespace Qt::StringLiterals;

namespace {

class NameOfOutput : public testing::TestWithParam<NameRow> {};

TEST_P(NameOfOutput, isThatExpected) {
  NamingBench bench;
  GetParam().arrange(bench);
  EXPECT_EQ(bench.path(), GetParam().path);
}

using enum FileNameMethod;

INSTANTIATE_TEST_SUITE_P(Methods, NameOfOutput,
                         testing::Values(NameRow{
                             "unknownMethodHasNoName",
                             [](NamingBench& bench) { bench.setup.extract = u"?"_s; },
                             "extract_ACME.pdf"}),
                         faultOf);

auto text(const QString& matched, const QString& filter = {}) {
  return [=](NamingBench& bench) {
    bench.setup.prefixFileName.clear();
    bench.setup.anyCharOfWord = filter;
    bench.range.rangeText = matched;
  };
}

auto with(const std::function<void(SplitSetup&)>& change, const QString& matched = u"ACME"_s) {
  return [=](NamingBench& bench) {
    bench.setup.prefixFileName.clear();
    bench.range.rangeText = matched;
    change(bench.setup);
  };
}

INSTANTIATE_TEST_SUITE_P(
    Cleaning, NameOfOutput,
    testing::Values(
        NameRow{"droppedCharactersAreReplaced", text(u"ACME, Ltd. 12/03"_s), "ACME, Ltd. 1203.pdf"},
        NameRow{"oneOfTheNineStays", text(u"a<b>c:d?e*f\"g/h\\i|j"_s), "abcdefghij.pdf"},
        NameRow{"tabOrLineBreakStays", text(u"a\tb\r\nc\u2028d\x7f"_s), "abcd.pdf"},
        NameRow{"lettersBeyondAsciiAreLost", text(u"Zoë Łódź 東京\u00ADx 😀"_s),
                "Zoë Łódź 東京\u00ADx 😀.pdf"},
        NameRow{"removeCharactersAreIgnored",
                with([](SplitSetup& setup) { setup.reportRemoveChars = u"#é😀"_s; }, u"#1é2😀3"_s),
                "123.pdf"},
        NameRow{"removeTextFoldsCaseOrKeepsOrder",
                with([](SplitSetup& setup) { setup.otherSettingsRemoveText = u"Ltd|| Co|xy"_s; },
                     u"A Ltdltd CoxLtdyy"_s),
                "A ltdy.pdf"},
        NameRow{
            "textIsRemovedAfterCleaning",
            with([](SplitSetup& setup) { setup.otherSettingsRemoveText = u"12/"_s; }, u"12/1203"_s),
            "1203.pdf"},
        NameRow{"capacityIsNot255", text(QString(300, u'a')),
                (QString(240, u'a') + u".pdf"_s).toStdString()},
        NameRow{"endIsTrimmedBeforeTokens",
                with(
                    [](SplitSetup& setup) {
                      setup.stripEnd = 2;
                      setup.prefixFileName = u"[EXTRACTTEXT]_"_s;
                    },
                    u"ACME"_s),
                "ACME_AC.pdf"},
        NameRow{"trimBeyondTheTextFails", with([](SplitSetup& setup) {
                  setup.stripEnd = INT_MAX;
                  setup.postfixFileName = u"x"_s;
                }),
                "x.pdf"},
        NameRow{"negativeTrimCuts", with([](SplitSetup& setup) { setup.stripEnd = -1; }),
                "ACME.pdf"}),
    faultOf);

INSTANTIATE_TEST_SUITE_P(
    Filters, NameOfOutput,
    testing::Values(
        NameRow{"firstNumericStays", text(u"INV12345"_s, u"[num]"_s), "INV.pdf"},
        NameRow{"numericsAmongTheFirstCut", text(u"A1B2C3D"_s, u"[num>char3"_s), "A1B.pdf"},
        NameRow{"closingBracketSpoilsNumber", text(u"A1B2C3D"_s, u"[num>char4]"_s), "A1B2C.pdf"},
        NameRow{"missingNumberIsNotZero", text(u"A1B"_s, u"[num>char]"_s), "A.pdf"},
        NameRow{"lengthIsOffByOne", text(u"ABCDEFG"_s, u"[char>4"_s), "ABCD.pdf"},
        NameRow{"lengthBeyondTextFails", text(u"ABC"_s, u"[char>99999999999999999]"_s), "ABC.pdf"},
        NameRow{"lengthHalvesCharacter", text(u"ABC😀"_s, u"[char>4]"_s), "ABC.pdf"},
        NameRow{"wordStaysOrFoldsCase", text(u"ACME ltd LTD x"_s, u"LTD"_s), "ACME ltd .pdf"},
        NameRow{"literalFilterTextIsNoWord", text(u"AB[num]C1"_s, u"[num]"_s), "AB.pdf"},
        NameRow{"nothingLeftGivesHiddenFile", text(u"2026"_s, u"[num]"_s), "unnamed.pdf"},
        NameRow{"restOfLineIsNotFiltered",
                [](NamingBench& bench) {
                  bench.setup.extract = methodText(AfterTextRestOfLine);
                  bench.setup.anyCharOfWord = u"[num]"_s;
                  bench.range.restOfLine = u"Acme 12"_s;
                },
                "extract_Acme .pdf"}),
    faultOf);

/// The token as prefix and as postfix.
auto affix(const QString& token, int offset = 0) {
  return [=](NamingBench& bench) {
    bench.setup.prefixFileName = bench.setup.postfixFileName = u"<"_s + token + u"-"_s;
    bench.setup.extract = methodText(PageStart);
    bench.setup.offsetFirst = offset;
    bench.words.words = {{400, u"Pos/400"_s}, {500, u"Pos500"_s}};
  };
}

INSTANTIATE_TEST_SUITE_P(
    Tokens, NameOfOutput,
    testing::Values(
        NameRow{"fileTitle", affix(u"[FILETITLE]"_s), "Batch 7-3Batch 7-.pdf"},
        NameRow{"extractText", affix(u"[EXTRACTTEXT]"_s), "ACME-3ACME-.pdf"},
        NameRow{"everyOccurrence", affix(u"[EXTRACTTEXT][EXTRACTTEXT]"_s),
                "ACMEACME-3ACMEACME-.pdf"},
        NameRow{"pageStartOffsetsBodyToo", affix(u"[PAGESTART]"_s, 2), "000005-3000005-.pdf"},
        NameRow{"pageStartBelowZeroIsPaddedWrong", affix(u"[PAGESTART]"_s, -10),
                "-000007-3-000007-.pdf"},
        NameRow{"pageOffsetOverflows", affix(u"[PAGESTARTNOMASK]"_s, INT_MAX),
                "2147483650-32147483650-.pdf"},
        NameRow{"pageStartNoMask", affix(u"[PAGESTARTNOMASK]"_s, 1), "4-34-.pdf"},
        NameRow{"pageEndIsOffset", affix(u"[PAGEEND]"_s, 1), "000005-3000005-.pdf"},
        NameRow{"pageEndNoMaskIsOffset", affix(u"[PAGEENDNOMASK]"_s, 1), "5-35-.pdf"},
        NameRow{"pagesAreOffset", affix(u"[PAGES]"_s, 1), "000003-3000003-.pdf"},
        NameRow{"totalPages", affix(u"[TOTALPAGES]"_s), "000012-3000012-.pdf"},
        NameRow{"positionWordIsNotCleaned", affix(u"[POS100-120,400]"_s), "Pos400-3Pos400-.pdf"},
        NameRow{"positionWordsChangePlaces", affix(u"[POS1,500][POS1,400]"_s),
                "Pos500Pos400-3Pos500Pos400-.pdf"},
        NameRow{"openPositionTokenIsTaken", affix(u"[POS1,400"_s), "[POS1,400-3[POS1,400-.pdf"},
        NameRow{"wordlessPositionStays", affix(u"[POS1,9]"_s), "-3-.pdf"},
        NameRow{"dates", affix(u"[YYYY][MM][DD] [M] [D]"_s), "20260309 3 9-320260309 3 9-.pdf"},
        NameRow{"times", affix(u"[hh][mm][ss]"_s), "080507-3080507-.pdf"},
        NameRow{"shortYearHasTwoDigits", affix(u"[YY]-[MM]_"_s), "2026-03_-32026-03_-.pdf"},
        NameRow{"shortYearAloneIsTaken", affix(u"[YY]_"_s), "[YY]_-3[YY]_-.pdf"},
        NameRow{"tokensIgnoreCase", affix(u"[pages]"_s), "[pages]-3[pages]-.pdf"},
        NameRow{"pagesAreNumberedAfterPositions", affix(u"[POS1,[PAGEENDNOMASK]00]"_s),
                "Pos500-3Pos500-.pdf"}),
    faultOf);

auto sourceAsAffix(const QString& source, bool before) {
  return [=](NamingBench& bench) {
    bench.source = source;
    bench.setup.useSourceFileName = before;
    bench.setup.useSourceFileNamePost = !before;
  };
}

INSTANTIATE_TEST_SUITE_P(
    SourceTitle, NameOfOutput,
    testing::Values(
        NameRow{"titleAddsToPrefix", sourceAsAffix(u"/in/Batch.PDF"_s, true), "BatchACME.pdf"},
        NameRow{"titleIsNoPostfix", sourceAsAffix(u"c:\\in\\b.pdf.pdf"_s, false),
                "extract_ACMEb.pdf.pdf"},
        NameRow{"onlyPdfEndingGoes", sourceAsAffix(u"x.pdfa"_s, true), "x.pdfaACME.pdf"},
        NameRow{"tokensInTitleStay", sourceAsAffix(u"/in/[MM].pdf"_s, true), "03ACME.pdf"}),
    faultOf);

TEST(OutputNamer, asksForTheFirstPlannedPageAndReadsRanges) {
  NamingBench bench;
  bench.setup.prefixFileName = u"[POS100-120,400]"_s;
  bench.setup.postfixFileName = u"[POS-5--1, 7-x][POSa]"_s;
  bench.setup.offsetFirst = 1;
  bench.named();
  EXPECT_EQ(bench.words.asked, u"p2 h100-120 v400-400;p2 h-5--1 v7-0;p2 h0-0 v0-0;"_s);
}

TEST(OutputNamer, countsOutputsOfOneSource) {
  NamingBench bench;
  bench.setup.extract = methodText(SequentialNumber);
  OutputNamer namer = bench.namer();
  EXPECT_EQ(namer.name(bench.range).path, u"/out/extract_000001.pdf"_s);
  EXPECT_EQ(namer.name(bench.range).path, u"/out/extract_000002.pdf"_s);
  namer.startSource(u"/in/next.pdf"_s, u"/other/"_s, 1);
  EXPECT_EQ(namer.name(bench.range).path, u"/other/extract_000001.pdf"_s);
}

TEST(OutputNamer, tokensAreFreshForEveryRange) {
  NamingBench bench;
  bench.setup.prefixFileName = u"[PAGESTARTNOMASK]_"_s;
  OutputNamer namer = bench.namer();
  EXPECT_EQ(namer.name(bench.range).path, u"/out/3_ACME.pdf"_s);
  bench.range.firstPage = bench.range.lastPage = 7;
  EXPECT_EQ(namer.name(bench.range).path, u"/out/8_ACME.pdf"_s);
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

} // namespace
} // namespace folivex::test
