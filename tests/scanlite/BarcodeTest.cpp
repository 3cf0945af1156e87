// Barcodes of scanned sheets as words, read by Scanlite as a process and used by the real program.
#include "tests/app/ProgramBench.h"
#include "tests/support/PdfFacts.h"
#include "tests/support/RealLibraries.h"

namespace folivex::test {
namespace {

struct Sheet {
  QString text;
  int h;
  int v;
};

class Barcodes : public ProgramBench {
protected:
  Barcodes() {
    place.environment().insert("FOLIVEX_OCR_READS", "barcodes");
    setup.ocrFirst = true;
    setup.findString = QStringLiteral("Barcode:");
  }

  /// Each a page of "sheets.pdf".
  std::vector<Sheet> makeSheets(const QStringList& arguments) const {
    const ProgramRun made = runProgram(
        "/usr/bin/python3", QStringList{FOLIVEX_SOURCE_DIR "/tests/scanlite/make_barcodes.py",
                                        place.at("sheets.pdf"), place.at("truth.txt")} +
                                arguments);
    EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
    std::vector<Sheet> sheets;
    for (const QString& line :
         QString::fromUtf8(contentOf(place.at("truth.txt"))).split('\n', Qt::SkipEmptyParts)) {
      const QStringList words = line.split(' ');
      sheets.push_back({words.value(4), words.value(5).toInt(), words.value(6).toInt()});
    }
    return sheets;
  }

  ProgramRun scanlite(const QString& source) const {
    return place.run({source, place.at("copy.pdf"), "0"},
                     QStringLiteral(FOLIVEX_BIN_DIR "/Scanlite"));
  }
};

} // namespace

/// Five symbologies, turned on the glass, tilted, and turned back by the page's own entry.
TEST_F(Barcodes, NameTheOutputsAndStandAtTheirPlace) {
  const std::vector<Sheet> sheets = makeSheets({"--sheets", "6", "--step", "7"});
  ASSERT_EQ(sheets.size(), 6U);
  const ProgramRun run = place.run({fxs(), "-f" + place.at("sheets.pdf"), "-c"});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  QStringList names;
  for (const Sheet& sheet : sheets) {
    names.append(sheet.text + ".pdf");
  }
  names.sort();
  EXPECT_EQ(outputs(), names);

  const QString copy = place.temporary() + "/sheets.pdf_fxs_ocr.pdf";
  factsOf(copy); // sound
  auto& library = *RealLibraries::get().text;
  int page = 0;
  for (const Sheet& sheet : sheets) {
    SCOPED_TRACE(sheet.text.toStdString());
    ++page;
    library.PdfTextDumpFile(reinterpret_cast<const char16_t*>(copy.utf16()), u"", page, page);
    ASSERT_EQ(library.getNumWords(), 3);
    library.wordToGet(1);
    EXPECT_EQ(QString::fromUtf16(library.getWordStr()), sheet.text);
    // The truth counts the quiet zone on the left and the digits below the bars in.
    EXPECT_NEAR(library.getWordX(), sheet.h, 14);
    EXPECT_NEAR(library.getWordY(), sheet.v, 8);
  }
  library.PdfTextDumpCloseFile();
}

/// A separator that was not looked at joins two documents: its page is told, and it alone is lost.
#if !defined(__SANITIZE_ADDRESS__) // which reserves more memory than any limit leaves
TEST_F(Barcodes, PageThatIsTooMuchCostsItselfAndIsTold) {
  const std::vector<Sheet> sheets = makeSheets({"--sheets", "2", "--large-second"});
  const ProgramRun run =
      place.run({"-c", "ulimit -v 250000; exec \"$@\"", "sh", FOLIVEX_BIN_DIR "/Scanlite",
                 place.at("sheets.pdf"), place.at("copy.pdf"), "0"},
                "sh");
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_TRUE(run.err.contains("page 2: it could not be drawn")) << run.err.toStdString();
  const QStringList texts = pageTexts(place.at("copy.pdf"));
  ASSERT_EQ(texts.size(), 3);
  EXPECT_TRUE(texts[0].contains(sheets[0].text)) << texts[0].toStdString();
  EXPECT_TRUE(texts[2].contains(sheets[1].text)) << texts[2].toStdString();
}
#endif

/// The process that goes on behind one that died of reading the whole picture.
TEST_F(Barcodes, WithoutTheStepThatAReaderDiedOfTheOthersFindThem) {
  const std::vector<Sheet> sheets = makeSheets({"--sheets", "2", "--dpi", "200"});
  const QString found = place.at("found.txt");
  writeFile(found, "pages 2\npa"); // half a line
  const ProgramRun run = place.run({"--barcodes", place.at("sheets.pdf"), found, "1", "0"},
                                   QStringLiteral(FOLIVEX_BIN_DIR "/Scanlite"));
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  const QString lines = QString::fromUtf8(contentOf(found));
  const QString first = lines.section("\npage 1\n", 1).section("\npage 2\n", 0, 0);
  const QString second = lines.section("\npage 2\n", 1);
  EXPECT_FALSE(first.contains("step 0\n")) << lines.toStdString();
  EXPECT_TRUE(second.startsWith("step 0\n")) << lines.toStdString();
  for (const auto& [page, sheet] : {std::pair{first, sheets[0]}, std::pair{second, sheets[1]}}) {
    EXPECT_TRUE(page.contains(' ' + QString::fromLatin1(sheet.text.toUtf8().toHex()) + '\n'))
        << lines.toStdString();
  }
}

/// Words that were read without barcodes, or in their stead, are other words.
TEST_F(Barcodes, CopyOfOtherSettingsIsNotUsed) {
  setup.findString = QStringLiteral("Account:");
  const QString sheet = source("a.pdf", {"A"});
  const QString used = QStringLiteral("the OCR'd copy of an earlier run is used");
  EXPECT_FALSE(place.run({fxs(), sheet, "-c"}).err.contains(used.toUtf8()));
  EXPECT_TRUE(place.run({fxs(), sheet, "-c"}).err.contains(used.toUtf8()));
  place.environment().insert("FOLIVEX_OCR_READS", "words");
  EXPECT_FALSE(place.run({fxs(), sheet, "-c"}).err.contains(used.toUtf8()));
}

TEST_F(Barcodes, PagesWithoutAnyStayAsTheyAreAndFilesThatAreNoneAreRefused) {
  source("a.pdf", {"A", "B"});
  ASSERT_EQ(scanlite(place.at("a.pdf")).exitCode, 0);
  EXPECT_EQ(pageTexts(place.at("copy.pdf")), pageTexts(place.at("a.pdf")));
  EXPECT_EQ(modeOf(place.at("copy.pdf")), 0600U);
  QFile::remove(place.at("copy.pdf"));

  const auto expectRefusal = [&](const QString& source, int code, const char* said) {
    const ProgramRun ended = scanlite(source);
    EXPECT_EQ(ended.exitCode, code) << said;
    EXPECT_TRUE(ended.err.contains(said)) << ended.err.toStdString();
    EXPECT_FALSE(QFile::exists(place.at("copy.pdf")));
  };
  expectRefusal(FOLIVEX_SOURCE_DIR "/samples/example.fxs", 5, "example.fxs");
  ASSERT_EQ(runProgram("qpdf", {"--encrypt", "secret", "owner", "256", "--", place.at("a.pdf"),
                                place.at("locked.pdf")})
                .exitCode,
            0);
  expectRefusal(place.at("locked.pdf"), 6, "password is needed");
  place.environment().insert("FOLIVEX_OCR_READS", "pictures");
  expectRefusal(place.at("a.pdf"), 1, "FOLIVEX_OCR_READS");
}

} // namespace folivex::test
