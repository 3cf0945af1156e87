#include "Splitting.h"

namespace tests::cleftor {

namespace {

constexpr int pageCount = 17'000;

/// Every page draws a letterhead that all share, and a line of its own; box and fonts are those of
/// the page tree. Page 2 links to the last, and a bookmark leads to it.
void writeLongDocument(const fs::path& file) {
  PdfBuilder pdf;
  pdf.addText("font = <</Type/Font/Subtype/Type1/BaseFont/Helvetica>>\n"
              "letterhead =  | BT /F 12 Tf 72 700 Td (Letterhead) Tj ET");
  const std::string link = "/Annots[<</Type/Annot/Subtype/Link/Rect[0 0 9 9]/Dest[" +
                           pdf.ref(2 * pageCount + 4) + "/Fit]>>]";
  std::string kids;
  for (int i = 1; i <= pageCount; ++i) {
    const int line =
        pdf.addStream("BT /F 12 Tf 72 650 Td (Page number " + std::to_string(i) + ") Tj ET");
    kids += pdf.ref(pdf.add("<</Type/Page/Parent 2 0 R/Contents[4 0 R " + pdf.ref(line) + "]" +
                            (i == 2 ? link : "") + ">>")) +
            " ";
  }
  pdf.set(2, "<</Type/Pages/Count " + std::to_string(pageCount) +
                 "/MediaBox[0 0 612 792]/Resources<</Font<</F 3 0 R>>>>/Kids[" + kids + "]>>");
  pdf.addText("catalog /Outlines @outline\n"
              "mark = <</Title(Second)/Parent @outline/Dest[1/Fit]>>\n"
              "outline = <</First @mark/Last @mark/Count 1>>");
  pdf.write(file);
}

class LongSourceTest : public SplittingTest {
protected:
  /// Words of each page from..to, as another tool reads them; pages of the output count from 1.
  static std::string textOf(const fs::path& file) {
    return run("pdftotext " + file.string() + " - | tr '\\n\\f' '  '");
  }

  static std::string expected(int first, int last) {
    std::string text;
    for (int page = first; page <= last; ++page) {
      text += "Letterhead  Page number " + std::to_string(page) + "   ";
    }
    return text;
  }
};

/// Pages of a long document leave the memory when they are written, and what is known of the whole
/// goes with them; nothing may be missing when it is wanted.
TEST_F(LongSourceTest, PagesThatLeftTheMemoryComeBack) {
  const fs::path plain = output("long.pdf");
  writeLongDocument(plain);
  const fs::path locked = output("locked.pdf");
  run("qpdf --encrypt secret secret 256 -- " + plain.string() + " " + locked.string());
  for (const fs::path& file : {plain, locked}) {
    SCOPED_TRACE(file.string());
    ASSERT_EQ(PdfTextDumpOpenFile(file.u16string().c_str(), u"secret"), CLEFTOR_OK) << errorText();
    ASSERT_EQ(GetPageCount2(), pageCount);
    SetKeepBookmarks(1);
    // In order, once more, far behind, backward, and once more.
    const std::pair<int, int> ranges[] = {{1, 3},           {4, 5},           {1, 3},
                                          {16'380, 16'390}, {16'999, 17'000}, {2, 4},
                                          {16'384, 16'386}, {16'999, 17'000}, {3, 3}};
    for (const auto& [first, last] : ranges) {
      SCOPED_TRACE(first);
      ASSERT_EQ(split(first, last), CLEFTOR_OK) << errorText();
      EXPECT_EQ(textOf(output()), expected(first, last));
      const bool hasBookmark = contentsOf(output()).find("(Second)") != std::string::npos;
      EXPECT_EQ(hasBookmark, first <= 2 && last >= 2);
    }
  }
}

/// The second thread may still be opening the source when the last range is written. Each range
/// has more pages than may wait, and goes through.
TEST_F(LongSourceTest, ClosingClosesTheFileOfBothThreads) {
  const fs::path file = output("long.pdf");
  writeLongDocument(file);
  const auto timesOpen = [&file] {
    int times = 0;
    for (const fs::directory_entry& descriptor : fs::directory_iterator("/proc/self/fd")) {
      std::error_code ignored;
      times += fs::read_symlink(descriptor, ignored) == file ? 1 : 0;
    }
    return times;
  };
  SetWriteBehind(1);
  ASSERT_EQ(PdfTextDumpOpenFile(file.u16string().c_str(), u""), CLEFTOR_OK);
  for (int i = 0; i < 100 && timesOpen() < 2; ++i) {
    ASSERT_EQ(split(1, 260), CLEFTOR_OK);
  }
  PdfTextDumpCloseFile();
  EXPECT_EQ(timesOpen(), 0);
  SetWriteBehind(0);
  EXPECT_EQ(textOf(output()), expected(1, 260));
}

/// What cannot be read any more is a failure, never an empty page, and so is what could be read
/// only because it was still in memory.
TEST_F(LongSourceTest, FileThatIsCutOffMeanwhileIsNoBlankPage) {
  const fs::path file = output("long.pdf");
  writeLongDocument(file);
  ASSERT_EQ(PdfTextDumpOpenFile(file.u16string().c_str(), u""), CLEFTOR_OK);
  fs::resize_file(file, 1000);
  for (const auto& [first, result] :
       {std::pair(16'999, CLEFTOR_SOURCE_CHANGED), {9'000, CLEFTOR_DAMAGED}}) {
    EXPECT_EQ(split(first, first + 1), result);
    EXPECT_THAT(errorText(), testing::HasSubstr(file.string()));
    EXPECT_FALSE(fs::exists(output()));
  }
}

} // namespace

} // namespace tests::cleftor
