// Whole files: passwords, damage, claimed page counts, outlines.

#include "Pages.h"

#include <gtest/gtest.h>

#include <tests/support/Programs.h>

namespace glyphruntest {
namespace {

PdfBuilder numberedPages(int pages = 2) {
  PdfBuilder pdf = newPdf();
  for (int i = 1; i <= pages; ++i) {
    pdf.addPage(show("Page" + std::to_string(i)), plainFonts);
  }
  pdf.addToTrailer("/ID[<0011><0011>]");
  return pdf;
}

int countOf(const std::string& path, const std::u16string& password = u"") {
  return GetPageCount(wide(path).c_str(), password.c_str());
}

/// A protected file of two pages.
std::string encrypted(const std::string& name, const std::string& arguments) {
  std::string path = pathFor(name + ".pdf");
  numberedPages().write(pathFor("plain.pdf"));
  QStringList options = QString::fromStdString(arguments).split(' ').replaceInStrings("''", "");
  options.prepend("--allow-weak-crypto");
  options << "--" << QString::fromStdString(pathFor("plain.pdf")) << QString::fromStdString(path);
  const auto made = folivex::test::runProgram("qpdf", options);
  EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
  return path;
}

TEST(Protection, TheRightPasswordOpensAWrongOneDoesNot) {
  struct Row {
    const char* name;
    const char* arguments;
    std::u16string right;
  };
  for (const auto& [name, arguments, right] :
       {Row{"rc4 of 40 bits", "--encrypt user owner 40", u"user"},
        {"rc4 of 128 bits", "--encrypt user owner 128 --use-aes=n", u"owner"},
        {"aes of 128 bits", "--encrypt user owner 128 --use-aes=y", u"user"},
        {"aes of 256 bits", "--encrypt user owner 256", u"user"},
        {"umlaut", "--encrypt g\u00FCn owner 128 --use-aes=y", u"g\u00FCn"},
        {"umlaut as careless programs wrote it",
         "--password-mode=bytes --encrypt g\u00FCn owner 128 --use-aes=y", u"g\u00FCn"},
        {"umlaut and euro", "--encrypt g\u00FCn\u20AC owner 256", u"g\u00FCn\u20AC"},
        {"not normalised", "--encrypt fig\u00FCn owner 256", u"\uFB01g\u00ADu\u0308n"}}) {
    SCOPED_TRACE(name);
    const std::string path = encrypted(name, arguments);
    for (const char16_t* wrong : {u"wrong", u""}) {
      EXPECT_EQ(countOf(path, wrong), 0);
      EXPECT_EQ(GlyphrunLastError(), GLYPHRUN_WRONG_PASSWORD);
      EXPECT_EQ(narrow(GlyphrunLastErrorText()).find("wrong "), std::string::npos);
    }
    EXPECT_EQ(countOf(path, right), 2);
    EXPECT_EQ(countOf(path, right + u" "), 2);
    PdfTextDumpFile(wide(path).c_str(), right.c_str(), 2, 2);
    EXPECT_EQ(GetFileFacts() & GLYPHRUN_FILE_ENCRYPTED, GLYPHRUN_FILE_ENCRYPTED);
    ASSERT_EQ(getNumWords(), 1);
    EXPECT_EQ(extract(2), "Page2");
  }
}

TEST(Protection, PermissionsAreToldAndDoNotStop) {
  EXPECT_EQ(wordsOf(encrypted("forbids", "--encrypt '' owner 256 --extract=n")), "Page1");
  EXPECT_EQ(GetFileFacts(), GLYPHRUN_FILE_ENCRYPTED | GLYPHRUN_FILE_FORBIDS_EXTRACTION);
}

TEST(Protection, PublicKeyHandlersAreNoPasswordCase) {
  PdfBuilder pdf = numberedPages();
  pdf.addToTrailer("/Encrypt<</Filter/Adobe.PubSec/SubFilter/adbe.pkcs7.s5/V 4>>");
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
  std::string bytes = numberedPages().finish();
  bytes.resize(bytes.find("xref\n"));
  const std::string path = pathFor("truncated.pdf");
  PdfBuilder::writeFile(path, bytes);
  EXPECT_EQ(wordsOf(path), "Page1");
  EXPECT_EQ(GetFileFacts(), GLYPHRUN_FILE_REPAIRED);
}

TEST(Damage, BrokenContentKeepsTheWordsBefore) {
  // A stored deflate block that claims more than is there.
  const std::string text = show("Before");
  const char claimed = static_cast<char>(text.size() + 9);
  const std::string data = {'\x78', '\x01', '\x01', claimed, 0, static_cast<char>(~claimed),
                            '\xFF'};
  PdfBuilder pdf = newPdf();
  pdf.set(pdf.named("broken"), PdfBuilder::stream(data + text, "/Filter/FlateDecode"));
  pdf.addText("rest =  | " + show("Rest") + "\npage /Contents @broken\npage | " + show("After") +
                  "\npage /Contents[99 0 R @rest]",
              plainFonts);
  EXPECT_EQ(wordsOf(pdf, 1), "Before");
  EXPECT_EQ(GetPageState(), GLYPHRUN_PAGE_DAMAGED);
  EXPECT_EQ(GetProcessingStatus(), GLYPHRUN_DAMAGED);
  EXPECT_EQ(wordsOf(pdf, 2), "After");
  EXPECT_EQ(GetPageState(), GLYPHRUN_PAGE_GOOD);
  EXPECT_EQ(wordsOf(pdf, 3), "Rest");
}

TEST(PageCounts, AreThoseOfPagesThatExist) {
  for (const long long claimed : {0LL, 1LL, 2'000'000'000LL, -5LL}) {
    PdfBuilder pdf = numberedPages(3);
    pdf.claimPages(claimed);
    EXPECT_EQ(wordsOf(pdf, 3), "Page3");
    EXPECT_EQ(GetPageCount2(), 3);
  }
}

TEST(PageCounts, LoopsAndDoublingsInTheTreeEnd) {
  PdfBuilder pdf;
  pdf.addText("pages = <</Type/Pages/Count 9/Kids[@node0 @leaf]>>\n"
              "leaf = <</Type/Page/MediaBox[0 0 9 9]>>\n"
              "node300 = <</Type/Pages/Count 9/Kids[@pages]>>");
  for (int i = 0; i < 300; ++i) {
    const std::string below = "@node" + std::to_string(i + 1);
    pdf.addText("node" + std::to_string(i) + " = <</Type/Pages/Count 9/Kids[" + below + " " +
                below + " @pages null 7]>>");
  }
  const std::string path = pathFor("loops.pdf");
  pdf.write(path);
  EXPECT_EQ(countOf(path), 1);
}

TEST(Outline, HasLevelsAndPagesAndEndsWhereItLoops) {
  PdfBuilder pdf = numberedPages();
  pdf.addText("catalog /Outlines @root/Names<</Dests<</Names[(name)<</D[@p2/XYZ 0 0 0]>>]>>>>\n"
              "root = <</First @a/Last @b>>\n"
              "a = <</Title<FEFF00C4>/Dest[@p1/Fit]/Next @b/First @a1>>\n"
              "a1 = <</Title(child)/A<</S/GoTo/D(name)>>>>\n"
              "b = <</Title(last)/A<</S/URI/URI(http://x/)>>/First @a/Next @a>>");
  wordsOf(pdf);
  std::string entries;
  GlyphrunOutlineEntry entry{};
  for (int i = 0; GetOutlineEntry(i, &entry) == GLYPHRUN_OK; ++i) {
    entries += narrow(entry.title) + " " + std::to_string(entry.level) + " " +
               std::to_string(entry.page) + "\n";
  }
  EXPECT_EQ(entries, "\u00C4 0 1\nchild 1 2\nlast 0 0\n");
  EXPECT_EQ(GetOutlineCount(), 3);
  EXPECT_EQ(narrow(entry.title), "last");
}

} // namespace
} // namespace glyphruntest
