// Whole files: passwords, damage, claimed page counts, outlines.

#include "Pages.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace glyphruntest {
namespace {

std::string writePlain(const std::string& name, int pages = 1) {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  for (int i = 1; i <= pages; ++i) {
    pdf.addPage("BT /F 10 Tf 50 700 Td (Page" + std::to_string(i) + ") Tj ET", fonts);
  }
  pdf.addToTrailer("/ID[<0011><0011>]");
  std::string path = pathFor(name);
  pdf.write(path);
  return path;
}

int countOf(const std::string& path, const std::u16string& password = u"") {
  return GetPageCount(wide(path).c_str(), password.c_str());
}

int encrypt(const std::string& arguments, const std::string& from, const std::string& to) {
  return std::system(
      ("qpdf --allow-weak-crypto " + arguments + " '" + from + "' '" + to + "'").c_str());
}

struct Protected {
  const char* name;
  const char* arguments;
  const char16_t* right;
};

class Passwords : public testing::TestWithParam<Protected> {};

TEST_P(Passwords, RightOpensWrongDoesNot) {
  const std::string path = pathFor(std::string(GetParam().name) + ".pdf");
  ASSERT_EQ(encrypt(GetParam().arguments, writePlain("plain.pdf", 2), path), 0);
  EXPECT_EQ(countOf(path, u"wrong"), 0);
  EXPECT_EQ(GlyphrunLastError(), GLYPHRUN_WRONG_PASSWORD);
  EXPECT_EQ(narrow(GlyphrunLastErrorText()).find("wrong "), std::string::npos);
  EXPECT_EQ(countOf(path), 0);
  EXPECT_EQ(GlyphrunLastError(), GLYPHRUN_WRONG_PASSWORD);
  EXPECT_EQ(countOf(path, GetParam().right), 2);
  EXPECT_EQ(countOf(path, std::u16string(GetParam().right) + u" "), 2);
  PdfTextDumpFile(wide(path).c_str(), GetParam().right, 2, 2);
  ASSERT_EQ(getNumWords(), 1);
  wordToGet(0);
  EXPECT_EQ(narrow(getWordStr()), "Page2");
  EXPECT_EQ(GetFileFacts() & GLYPHRUN_FILE_ENCRYPTED, GLYPHRUN_FILE_ENCRYPTED);
}

INSTANTIATE_TEST_SUITE_P(
    Files, Passwords,
    testing::Values(
        Protected{"rc4_40", "--encrypt user owner 40 --", u"user"},
        Protected{"rc4_128", "--encrypt user owner 128 --use-aes=n --", u"owner"},
        Protected{"aes_128", "--encrypt user owner 128 --use-aes=y --", u"user"},
        Protected{"aes_256", "--encrypt user owner 256 --", u"user"},
        Protected{"umlaut_128", "--encrypt g\u00FCn owner 128 --use-aes=y --", u"g\u00FCn"},
        // as bytes of UTF-8, which is how careless programs wrote them
        Protected{"utf8_128", "--password-mode=bytes --encrypt g\u00FCn owner 128 --use-aes=y --",
                  u"g\u00FCn"},
        Protected{"umlaut_256", "--encrypt g\u00FCn\u20AC owner 256 --", u"g\u00FCn\u20AC"},
        Protected{"nfkc_256", "--encrypt fig\u00FCn owner 256 --", u"\uFB01g\u00ADu\u0308n"}),
    [](const auto& test) { return test.param.name; });

TEST(Protection, PermissionsAreToldAndDoNotStop) {
  const std::string path = pathFor("forbids.pdf");
  ASSERT_EQ(encrypt("--encrypt '' owner 256 --extract=n --", writePlain("plain.pdf"), path), 0);
  EXPECT_EQ(textOf(wordsOf(path)), "Page1");
  EXPECT_EQ(GetFileFacts(), GLYPHRUN_FILE_ENCRYPTED | GLYPHRUN_FILE_FORBIDS_EXTRACTION);
}

TEST(Protection, PublicKeyHandlersAreNoPasswordCase) {
  PdfBuilder pdf;
  pdf.addPage("", plainFonts(pdf));
  pdf.addToTrailer(
      "/ID[<00><00>]/Encrypt " +
      PdfBuilder::ref(pdf.add("<</Filter/Adobe.PubSec/SubFilter/adbe.pkcs7.s5/V 4>>")));
  const std::string path = pathFor("pubsec.pdf");
  pdf.write(path);
  EXPECT_EQ(countOf(path), 0);
  EXPECT_EQ(GlyphrunLastError(), GLYPHRUN_UNSUPPORTED);
}

TEST(Damage, WhatIsNoPdfIsRefused) {
  EXPECT_EQ(countOf(pathFor("missing.pdf")), 0);
  EXPECT_EQ(GlyphrunLastError(), GLYPHRUN_CANNOT_OPEN);
  const std::string path = pathFor("junk.pdf");
  for (const std::string& bytes :
       {std::string(), std::string("%PDF-1.7\n"), std::string(5000, 'x'), std::string(300, '\0')}) {
    PdfBuilder::writeFile(path, bytes);
    EXPECT_EQ(countOf(path), 0);
    EXPECT_EQ(GlyphrunLastError(), GLYPHRUN_NOT_A_PDF);
    EXPECT_FALSE(narrow(GlyphrunLastErrorText()).empty());
  }
}

TEST(Damage, TruncatedFilesAreRepaired) {
  PdfBuilder pdf;
  pdf.addPage("BT /F 10 Tf 50 700 Td (Page1) Tj ET", plainFonts(pdf));
  std::string bytes = pdf.finish();
  bytes.resize(bytes.find("xref\n"));
  const std::string path = pathFor("truncated.pdf");
  PdfBuilder::writeFile(path, bytes);
  EXPECT_EQ(textOf(wordsOf(path)), "Page1");
  EXPECT_EQ(GetFileFacts(), GLYPHRUN_FILE_REPAIRED);
}

TEST(Damage, BrokenContentKeepsTheWordsBefore) {
  const std::string plain = writePlain("plain.pdf", 2);
  const std::string packed = pathFor("packed.pdf");
  ASSERT_EQ(std::system(("qpdf --compress-streams=y --object-streams=disable '" + plain + "' '" +
                         packed + "'")
                            .c_str()),
            0);
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  // A stored deflate block that claims more than is there.
  const std::string text = "BT /F 10 Tf 50 700 Td (Before) Tj ET ";
  std::string data = std::string("\x78\x01\x01", 3);
  data += {static_cast<char>(text.size() + 9), 0, static_cast<char>(~(text.size() + 9)), '\xFF'};
  pdf.addPageObject(PdfBuilder::ref(pdf.addStream(data + text, "/Filter/FlateDecode")), fonts);
  pdf.addPage("BT /F 10 Tf 50 700 Td (After) Tj ET", fonts);
  pdf.addPageObject("[99 0 R " +
                        PdfBuilder::ref(pdf.addStream("BT /F 10 Tf 50 700 Td (Rest) Tj ET")) + "]",
                    fonts);
  EXPECT_EQ(textOf(wordsOf(pdf, 1)), "Before");
  EXPECT_EQ(GetPageState(), GLYPHRUN_PAGE_DAMAGED);
  EXPECT_EQ(GetProcessingStatus(), GLYPHRUN_DAMAGED);
  EXPECT_EQ(textOf(wordsOf(pdf, 2)), "After");
  EXPECT_EQ(GetPageState(), GLYPHRUN_PAGE_GOOD);
  EXPECT_EQ(textOf(wordsOf(pdf, 3)), "Rest");
}

TEST(PageCounts, AreThoseOfPagesThatExist) {
  for (const long long claimed : {0LL, 1LL, 2'000'000'000LL, -5LL}) {
    PdfBuilder pdf;
    const std::string fonts = plainFonts(pdf);
    for (int i = 1; i <= 3; ++i) {
      pdf.addPage("BT /F 10 Tf 50 700 Td (Page" + std::to_string(i) + ") Tj ET", fonts);
    }
    pdf.claimPages(claimed);
    EXPECT_EQ(textOf(wordsOf(pdf, 3)), "Page3");
    EXPECT_EQ(GetPageCount2(), 3);
  }
}

TEST(PageCounts, LoopsAndDoublingsInTheTreeEnd) {
  PdfBuilder pdf;
  const int page = pdf.add("<</Type/Page/MediaBox[0 0 9 9]>>");
  std::vector<int> nodes(300);
  for (int& node : nodes) {
    node = pdf.reserve();
  }
  const std::string last = PdfBuilder::ref(nodes[299]);
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const std::string below = PdfBuilder::ref(i + 1 < nodes.size() ? nodes[i + 1] : 2);
    pdf.set(nodes[i], std::string("<</Type/Pages/Count 9/Kids[")
                          .append(below)
                          .append(" ")
                          .append(below)
                          .append(" 2 0 R null 7]>>"));
  }
  pdf.set(2, "<</Type/Pages/Count 9/Kids[" + PdfBuilder::ref(nodes[0]) + " " +
                 PdfBuilder::ref(page) + "]>>");
  const std::string path = pathFor("loops.pdf");
  pdf.write(path);
  EXPECT_EQ(countOf(path), 1);
}

TEST(Outline, HasLevelsAndPages) {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  const int first = pdf.addPage("", fonts);
  const int second = pdf.addPage("", fonts);
  const int root = pdf.reserve();
  const int a = pdf.reserve();
  const int a1 = pdf.reserve();
  const int b = pdf.reserve();
  pdf.set(root, "<</First " + PdfBuilder::ref(a) + "/Last " + PdfBuilder::ref(b) + ">>");
  pdf.set(a, "<</Title<FEFF00C4>/Dest[" + PdfBuilder::ref(first) + "/Fit]/Next " +
                 PdfBuilder::ref(b) + "/First " + PdfBuilder::ref(a1) + ">>");
  pdf.set(a1, "<</Title(child)/A<</S/GoTo/D(name)>>>>");
  // Loops to its own beginning.
  pdf.set(b, "<</Title(last)/A<</S/URI/URI(http://x/)>>/First " + PdfBuilder::ref(a) + "/Next " +
                 PdfBuilder::ref(a) + ">>");
  pdf.addToCatalog("/Outlines " + PdfBuilder::ref(root) + "/Names<</Dests<</Names[(name)<</D[" +
                   PdfBuilder::ref(second) + "/XYZ 0 0 0]>>]>>>>");
  wordsOf(pdf);
  ASSERT_EQ(GetOutlineCount(), 3);
  GlyphrunOutlineEntry entry{};
  ASSERT_EQ(GetOutlineEntry(0, &entry), GLYPHRUN_OK);
  EXPECT_EQ(narrow(entry.title), "\u00C4");
  EXPECT_EQ(entry.level, 0);
  EXPECT_EQ(entry.page, 1);
  ASSERT_EQ(GetOutlineEntry(1, &entry), GLYPHRUN_OK);
  EXPECT_EQ(entry.level, 1);
  EXPECT_EQ(entry.page, 2);
  ASSERT_EQ(GetOutlineEntry(2, &entry), GLYPHRUN_OK);
  EXPECT_EQ(narrow(entry.title), "last");
  EXPECT_EQ(entry.page, 0);
  EXPECT_LT(GetOutlineEntry(3, &entry), 0);
  EXPECT_EQ(narrow(entry.title), "last");
}

} // namespace
} // namespace glyphruntest
