// What one word is: gaps, pieces, repetitions, order, text.

#include "Pages.h"

#include <gtest/gtest.h>

namespace glyphruntest {
namespace {

struct Joining {
  const char* fault;
  const char* content; ///< inside BT ... ET, Helvetica 10 at 50,700
  const char* words;
};

class Words : public testing::TestWithParam<Joining> {};

TEST_P(Words, AreFormedAsSeen) {
  const std::string content = std::string("BT /F 10 Tf 50 700 Td ") + GetParam().content + " ET";
  EXPECT_EQ(textOf(wordsOfContent(content)), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Pages, Words,
    testing::Values(
        Joining{"kerning", "[(A)60(V)-40(A)70(Type)]TJ", "AVAType"},
        Joining{"blank by adjustment", "[(Total)-250(sum)]TJ", "Total sum"},
        Joining{"blank glyph under negative adjustment", "[(Total )278(sum)]TJ", "Total sum"},
        Joining{"no-break blank", "(12\\240345) Tj", "12 345"},
        Joining{"pieces", "(In) Tj 7.78 0 Td (voice) Tj", "Invoice"},
        Joining{"pieces in several fonts", "(In) Tj /T 10 Tf (voi) Tj /F 10 Tf (ce) Tj", "Invoice"},
        Joining{"pieces drawn out of order", "7.78 0 Td (voice) Tj -7.78 0 Td (In) Tj", "Invoice"},
        Joining{"letter-spacing", "3 Tc (INVOICE) Tj", "INVOICE"},
        Joining{"letter-spacing over pieces", "3 Tc (INVO) Tj (ICES) Tj", "INVOICES"},
        Joining{"letter-spacing with blanks", "2 Tc (ONE TWO) Tj", "ONE TWO"},
        Joining{"character spacing as a blank",
                "(options) Tj 2.5 Tc (][) Tj 0 Tc 40.3 0 Td (files) Tj", "options] [files"},
        Joining{"cells that nearly touch", "(12.50) Tj 26.6 0 Td (99.00) Tj", "12.50 99.00"},
        Joining{"cells that overlap", "(12.50) Tj 20 0 Td (99.00) Tj", "12.50 99.00"},
        Joining{"narrow text", "40 Tz (In) Tj 3.11 0 Td (voice) Tj 30 0 Td (next) Tj",
                "Invoice next"},
        Joining{"wide word spacing", "20 Tw (one two) Tj", "one two"},
        Joining{"bold by drawing twice", "(Total) Tj 0.3 0 Td (Total) Tj", "Total"},
        Joining{"bold glyph by glyph", "[(B)667(B)-20(o)556(o)-20(l)222(l)-20(d)556(d)]TJ", "Bold"},
        Joining{"bold in a second pass", "(Total) Tj 0 -20 Td (x) Tj 0.2 20 Td (Total) Tj",
                "Total x"},
        Joining{"bold word, plain value behind it", "(Sum:) Tj 0.3 0 Td (Sum:5) Tj", "Sum:5"},
        Joining{"double letters stay", "(ball) Tj", "ball"},
        Joining{"invisible text", "3 Tr (Scanned) Tj", "Scanned"},
        Joining{"string escapes", "(a\\(b\\)\\\nc\\101) Tj", "a(b)cA"},
        Joining{"hex strings", "<48656C6C 6F7> Tj", "Hellop"},
        Joining{"quote operators", "12 TL (one) Tj (two) ' 5 0 (th ree) \"", "one two th ree"},
        Joining{"accent drawn over its letter", "[(e)556(\\264)]TJ", "\u00E9"},
        Joining{"accent drawn before its letter", "[(caf)-10(\\264)450(e)]TJ", "caf\u00E9"}),
    [](const auto& test) {
      std::string name = test.param.fault;
      for (char& c : name) {
        c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
      }
      return name;
    });

TEST(WordSpacing, MoreIsMoreTolerant) {
  const char* const content = "BT /F 10 Tf 50 700 Td [(Total)-200(sum)]TJ ET";
  EXPECT_EQ(textOf(wordsOfContent(content)), "Total sum");
  SetWordSpacing(1.15);
  EXPECT_EQ(textOf(wordsOfContent(content)), "Totalsum");
  for (const double senseless : {-1.0, 0.0, std::numeric_limits<double>::quiet_NaN()}) {
    SetWordSpacing(senseless);
    EXPECT_EQ(textOf(wordsOfContent(content)), "Total sum");
  }
}

/// A composite font whose two-byte codes are their own text.
std::string unicodeFont(PdfBuilder& pdf, const std::string& encoding = "Identity-H") {
  const int map = pdf.addStream("1 begincodespacerange <0000> <FFFF> endcodespacerange\n"
                                "1 beginbfrange <0000> <FFFF> <0000> endbfrange");
  const int descendant = pdf.add("<</Type/Font/Subtype/CIDFontType2/BaseFont/Any/DW 500"
                                 "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)>>>>");
  const int font =
      pdf.add("<</Type/Font/Subtype/Type0/BaseFont/Any/Encoding/" + encoding + "/DescendantFonts[" +
              PdfBuilder::ref(descendant) + "]/ToUnicode " + PdfBuilder::ref(map) + ">>");
  return "/Font<</U " + PdfBuilder::ref(font) + ">>";
}

std::vector<Word> wordsInUnicode(const std::string& content,
                                 const std::string& encoding = "Identity-H") {
  PdfBuilder pdf;
  const std::string font = unicodeFont(pdf, encoding);
  pdf.addPage("BT /U 10 Tf 50 700 Td " + content + " ET", font);
  return wordsOf(pdf);
}

TEST(Unicode, LigaturesAreSpelledOutAndAccentsComposed) {
  EXPECT_EQ(textOf(wordsInUnicode("<FB03> Tj <0063> Tj")), "ffic");
  EXPECT_EQ(textOf(wordsInUnicode("<006503010041030A> Tj")), "\u00E9\u00C5");
  EXPECT_EQ(textOf(wordsInUnicode("<00B2FF11> Tj")), "\u00B2\uFF11"); // no mere typography
  EXPECT_EQ(textOf(wordsInUnicode("<0041200B2060FEFF0042> Tj")), "AB");
  EXPECT_EQ(textOf(wordsInUnicode("<004100AD> Tj")), "A\u00AD"); // a soft hyphen stays
}

TEST(Unicode, BlanksOfEveryKindEndAWord) {
  for (const char* blank : {"0020", "00A0", "2003", "2009", "202F", "3000", "0009"}) {
    EXPECT_EQ(textOf(wordsInUnicode(std::string("<0041") + blank + "0042> Tj")), "A B") << blank;
  }
}

TEST(RightToLeft, VisualOrderBecomesLogical) {
  // shalom olam (as the page shows it, from the left: o-l-a-m s-h-a-l-o-m)
  const auto words = wordsInUnicode("<05DD05DC05D505E2002005DD05D505DC05E9> Tj");
  EXPECT_EQ(textOf(words), "\u05E9\u05DC\u05D5\u05DD \u05E2\u05D5\u05DC\u05DD");
  EXPECT_GT(words[0].h, words[1].h);
}

TEST(RightToLeft, GlyphsDrawnFromTheRightGiveTheSame) {
  const auto words =
      wordsInUnicode("100 0 Td <05E9> Tj -5 0 Td <05DC> Tj -5 0 Td <05D5> Tj -5 0 Td <05DD> Tj");
  ASSERT_EQ(textOf(words), "\u05E9\u05DC\u05D5\u05DD");
  EXPECT_EQ(words[0].h, 135);
}

TEST(RightToLeft, NumbersAndLatinWordsKeepTheirOrder) {
  EXPECT_EQ(textOf(wordsInUnicode("<0031002C0032003505D0> Tj")), "\u05D0"
                                                                 "1,25");
  EXPECT_EQ(textOf(wordsInUnicode("<05D20020004F004B0020006E006F0020> Tj <05D0> Tj")),
            "\u05D0 OK no \u05D2");
  EXPECT_EQ(textOf(wordsInUnicode("<FEFB0645> Tj")),
            "\u0645\u0644\u0627"); // a ligature keeps its letters' order
}

TEST(RightToLeft, AnAddressWithAPieceInItStaysAnAddress) {
  EXPECT_EQ(textOf(wordsInUnicode("<0078002E006E00650074002F05D205D105D0> Tj")),
            "x.net/\u05D0\u05D1\u05D2");
}

TEST(Wide, JustifiedCharactersStayTogetherAndNumbersDoNot) {
  EXPECT_EQ(textOf(wordsInUnicode("[<672C>-150<7AE0>-150<5C06>] TJ")), "\u672C\u7AE0\u5C06");
  EXPECT_EQ(textOf(wordsInUnicode("[<0035>-150<7AE0>] TJ")), "5 \u7AE0");
}

TEST(Vertical, GlyphsBelowOneAnotherAreAWord) {
  const auto words = wordsInUnicode("<65E5672C8A9E> Tj 0 -60 Td <6771> Tj", "Identity-V");
  ASSERT_EQ(words.size(), 2U);
  EXPECT_EQ(words[0], (Word{"\u65E5\u672C\u8A9E", 50, 100}));
  EXPECT_EQ(words[1], (Word{"\u6771", 50, 160}));
}

TEST(ActualText, StandsForTheGlyphsItCovers) {
  EXPECT_EQ(
      textOf(wordsOfContent(
          "BT /F 10 Tf 50 700 Td (pre) Tj /Span<</ActualText(ffi)>>BDC (x) Tj EMC (ng) Tj ET")),
      "preffing");
  const auto words = wordsOfContent(
      "BT /F 10 Tf 50 700 Td /Span<</ActualText<FEFF0041002000420043>>>BDC (wxyz) Tj EMC ET");
  ASSERT_EQ(textOf(words), "A BC");
  EXPECT_GT(words[1].h, 57);
  EXPECT_EQ(textOf(wordsOfContent(
                "BT /F 10 Tf 50 700 Td /Span<</ActualText<FEFF>>>BDC (gone) Tj EMC ( here) Tj ET")),
            "here");
}

} // namespace
} // namespace glyphruntest
