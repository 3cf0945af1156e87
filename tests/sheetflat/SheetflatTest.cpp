// Sheetflat as a process, with the real converter behind it.
#include "tests/sheetflat/SheetBench.h"
#include "tests/support/CompanionStop.h"
#include "tests/support/Rows.h"

namespace {

using namespace folivex::test;

class Sheetflat : public SheetBench {
protected:
  void SetUp() override {
    SheetBench::SetUp();
    ASSERT_TRUE(QDir(folder.path()).mkdir("out"));
  }

  QString output() const { return path("out/sheet.csv"); }

  QStringList outputs() const {
    return QDir(path("out"))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
  }

  QByteArray flatten(const QString& source) const {
    QFile::remove(output());
    const ProgramRun run = runProgram(program, {source, output()});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    return contentOf(output());
  }
};

TEST_F(Sheetflat, EveryKindGivesTheSameTable) {
  // Blank rows in front, text that looks like a number, quotes and line breaks inside a cell.
  const QByteArray rows = R"([[], [], ["Email", "File", "Page"],
    ["käthe@exämple.de", "Rechnung, \"März\".pdf", 3],
    [],
    ["渡辺@例え.jp", "請求書.pdf", 1234567890123456, "00123", "1E5", "one\ntwo; three"]])";
  const QByteArray expected = "\n\nEmail,File,Page,,,\n"
                              "käthe@exämple.de,\"Rechnung, \"\"März\"\".pdf\",3,,,\n"
                              ",,,,,\n"
                              "渡辺@例え.jp,請求書.pdf,1234567890123456,00123,1E5,\"one\ntwo; "
                              "three\"\n";
  for (const char* name : {"a.xlsx", "a.xls", "a.ods", "100% #1;%20%n ü.xlsx"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(flatten(makeSheet(QString::fromUtf8(name), rows)), expected);
  }
  EXPECT_EQ(outputs(), QStringList{"sheet.csv"});
  EXPECT_FALSE(QFile::permissions(output()) & (QFile::ReadGroup | QFile::ReadOther));
}

TEST_F(Sheetflat, CellsReadAsTheSheetShowsThemButNumbersInFull) {
  const QByteArray rows = R"([
    [{"number": 123, "format": "000000"}, {"date": "2026-03-04", "format": "dd.mm.yyyy"},
     {"number": 1234.5, "format": "#,##0.00"}, {"number": 7, "format": "\"INV-\"0000"}],
    [10000000007, 123456789.125, {"number": 3.7, "format": "0"}, -5]])";
  const QByteArray expected = "000123,04.03.2026,\"1,234.50\",INV-0007\n"
                              "10000000007,123456789.125,3.7,-5\n";
  for (const char* name : {"a.xlsx", "a.xls"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(flatten(makeSheet(QString::fromUtf8(name), rows)), expected);
  }
}

TEST_F(Sheetflat, TakesTheKeptValueOfAFormulaThatItCannotWorkOut) {
  const QByteArray rows =
      R"json([["Email", {"formula": "=_xlfn.XLOOKUP(1,B1,C1)", "cached": "a@b.org"},
    {"formula": "=[1]Customers!A1", "cached": "c@d.org"}]])json";
  EXPECT_EQ(flatten(makeSheet("a.xlsx", rows)), "Email,a@b.org,c@d.org\n");
}

TEST_F(Sheetflat, TextOfEveryFashionIsNormalised) {
  forEachRow("sheetflat/texts.json", [this](const auto&, const QStringList& row) {
    EXPECT_EQ(flatten(makeFile("list.xls", row[0].toLatin1())), row[1].toUtf8());
  });
}

TEST_F(Sheetflat, SaysWhatIsWrongAndLeavesNothing) {
  const QString sheet = makeSheet("good.xlsx", R"([["Email"]])");
  const QByteArray good = contentOf(sheet);
  // An encrypted workbook is a compound file with a stream of this name.
  const QByteArray oldSheet = contentOf(makeSheet("good.xls", R"([["Email"]])"));
  const QByteArray streamName("E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e\0", 32);
  const qsizetype workbookName = oldSheet.indexOf(QByteArray("W\0o\0r\0k\0b\0o\0o\0k\0", 16));
  ASSERT_GT(workbookName, 0);
  QByteArray encrypted = oldSheet;
  encrypted.replace(workbookName, streamName.size(), streamName);
  ASSERT_TRUE(QDir(folder.path()).mkdir("nothing"));
  QProcessEnvironment bare = QProcessEnvironment::systemEnvironment();
  bare.insert("PATH", path("nothing"));

  const auto expectRefusal = [this](const ProgramRun& run, int code, const char* said) {
    SCOPED_TRACE(said);
    EXPECT_EQ(run.exitCode, code);
    EXPECT_TRUE(run.err.contains(said)) << run.err.toStdString();
    EXPECT_EQ(outputs(), QStringList());
  };
  const auto refuse = [&](const QByteArray& content, int code, const char* said) {
    const QString source = makeFile("bad.xlsx", content);
    expectRefusal(runProgram(program, {source, output()}), code, said);
  };
  expectRefusal(runProgram(program, {sheet, output()}, bare), 3, "is not installed");
  expectRefusal(runProgram(program, {path("absent.xlsx"), output()}), 5, "No such file");
  expectRefusal(runProgram(program, {sheet, path("absent/sheet.csv")}), 7, "cannot be written");
  expectRefusal(runProgram(program, {sheet, path("out")}), 7, "cannot be written");
  expectRefusal(runProgram(program, {sheet}), 2, "usage:");
  refuse(good.left(good.size() / 2), 5, "it is damaged");
  refuse(oldSheet.left(oldSheet.size() / 2), 5, "it is damaged");
  refuse(encrypted, 6, "protected by a password");
  refuse(contentOf(QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf")), 5,
         "no spreadsheet");
  refuse("<html><table><tr><td>Email</td></tr></table></html>", 5, "web page");
  refuse("Email,File\na,\"b\nc,d\n", 5, "opened in row 2 is never closed");
}

// A cell in the last corner makes a table of 17 thousand million cells, which keeps the converter
// busy until it meets its limit.
constexpr const char* farCorner = R"([["Email", {"number": 1, "at": "XFD1048576"}]])";

TEST_F(Sheetflat, ATableWithoutEndIsRefused) {
  const ProgramRun run = runProgram(program, {makeSheet("far.xlsx", farCorner), output()});
  EXPECT_EQ(run.exitCode, 8) << run.err.toStdString();
  EXPECT_TRUE(run.err.contains("more than 32 MB")) << run.err.toStdString();
  EXPECT_EQ(outputs(), QStringList());
}

TEST_F(Sheetflat, ToldToStopItEndsTheConverterAndCleansUp) {
  expectStopLeavesNothing(program, {makeSheet("far.xlsx", farCorner), output()}, path("out"), 1);
}

} // namespace
