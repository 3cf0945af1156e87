// "--pages": several runs of the program, each with a part of a source, against one that makes all.
#include "tests/app/ProgramBench.h"
#include "tests/support/Rows.h"

#include <QRegularExpression>

#include <functional>

using namespace folivex;
using namespace folivex::test;

namespace {

const QStringList parts = {"1-4", "5-5", "6-2147483647"};

class ProgramParts : public ProgramBench {
protected:
  /// Documents of one to three pages. They share names within a part and across, and one of them
  /// reaches over the end of a part; one page comes before the first.
  ProgramParts() {
    TextPdf pdf;
    pdf.page({"cover"});
    for (const char* account : {"A B1", "", "A B2", "", "", "C B3", "A B4", "A_part002 B5",
                                "sums B6", "C B7", "", "A B8"}) {
      pdf.page({*account == '\0' ? QString() : QStringLiteral("Account: ") + account});
    }
    pdf.write(place.at("sums.pdf"));
    writeFile(place.at("names.txt"), "one\ntwo\nthree\none\nfour\nfive\nsix\ntwo\n");
  }

  QString setupInto(const QString& folder) {
    setup.outputDir = place.at(folder);
    return fxs(folder + ".fxs");
  }
  ProgramRun runPart(const QString& part, const QString& folder, const QStringList& more = {}) {
    return place.run(QStringList{setupInto(folder), "-fsums.pdf", "--pages", part, "-c"} + more);
  }
  /// Keeps what a run into that folder would do as "plan".
  QByteArray plan(const QString& folder) {
    const ProgramRun run = place.run({"--json", "--plan", setupInto(folder), "-fsums.pdf"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    writeFile(place.at("plan"), run.out);
    return run.out;
  }

  /// By name, without what a writer makes up for each file.
  QMap<QString, QByteArray> filesIn(const QString& folder) const {
    static const QRegularExpression id(R"(/ID\s*\[\s*<[0-9a-fA-F]*>\s*<[0-9a-fA-F]*>\s*\])");
    QMap<QString, QByteArray> files;
    for (const QString& name : filesBelow(place.at(folder))) {
      QString content = QString::fromLatin1(contentOf(place.at(folder + u'/' + name)));
      EXPECT_TRUE(content.contains(id)) << name.toStdString();
      files[name] = content.remove(id).toLatin1();
    }
    return files;
  }

  /// The rows of a CSV report, paths without their folder.
  QStringList rowsOf(const QString& report, const QString& folder) const {
    QStringList lines = QString::fromUtf8(contentOf(place.at(report)))
                            .remove(place.at(folder))
                            .split("\r\n", Qt::SkipEmptyParts);
    lines.removeIf([](const QString& line) { return !line.at(0).isDigit(); });
    return lines;
  }
};

/// Of "13 page(s): 4 in 2 file(s), ..." the second number.
int pagesInFiles(const ProgramRun& run) {
  static const QRegularExpression account(R"(13 page\(s\): (\d+) in \d+ file)");
  return account.match(QString::fromUtf8(run.err)).captured(1).toInt();
}

} // namespace

TEST_F(ProgramParts, ComeToWhatOneRunMakes) {
  const struct {
    const char* fault;
    std::function<void(SplitSetup&)> set;
  } rows[] = {
      {"numbers of equal names begin anew in each part", [](SplitSetup&) {}},
      {"an output that a later part replaces is written", // else chance decides which one stays
       [](SplitSetup& rules) { rules.alwaysOverwrite = true; }},
      {"running numbers begin anew",
       [](SplitSetup& rules) { rules.extract = "Sequential Number"; }},
      {"each part takes the first names of the list",
       [this](SplitSetup& rules) {
         rules.extract = "Use filelist as filename";
         rules.reportUseFileList = place.at("names.txt");
       }},
      {"a range that grew is cut at the end of a part",
       [](SplitSetup& rules) { rules.pageExtract = splitMethodTexts()[1]; }},
      {"pages taken off the front move a range twice, or to no part",
       [](SplitSetup& rules) { rules.offsetFirst = 1; }},
  };
  for (int number = 0; const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    const SplitSetup before = setup;
    row.set(setup);
    const QString whole = QStringLiteral("whole%1").arg(number);
    const QString made = QStringLiteral("parts%1").arg(number++);
    const ProgramRun one = place.run({setupInto(whole), "-fsums.pdf", "-c"});
    ASSERT_EQ(one.exitCode, 0) << one.err.toStdString();
    int pages = 0;
    for (qsizetype part : {2, 0, 1}) { // the order is nobody's promise
      const ProgramRun run = runPart(parts[part], made);
      EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
      pages += pagesInFiles(run);
    }
    EXPECT_EQ(filesIn(made), filesIn(whole));
    EXPECT_GE(filesIn(whole).size(), 3);
    EXPECT_EQ(pages, pagesInFiles(one)) << one.err.toStdString();
    QStringList reported;
    for (const QString& part : parts) {
      reported += rowsOf("sums.pdf_pages_" + part + "_report.csv", made);
    }
    EXPECT_EQ(reported, rowsOf("sums.pdf_report.csv", whole));
    EXPECT_FALSE(reported.isEmpty());
    const QString planned = QStringLiteral("planned%1").arg(number);
    plan(planned);
    pages = 0;
    for (qsizetype part : {1, 2, 0}) {
      const ProgramRun run = runPart(parts[part], planned, {"--planned", "plan"});
      EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
      pages += pagesInFiles(run);
    }
    EXPECT_EQ(filesIn(planned), filesIn(whole));
    EXPECT_EQ(pages, pagesInFiles(one));
    setup = before;
  }
}

/// Pages are read for nothing but addresses, and only those of the part.
TEST_F(ProgramParts, OfAPlanMailToWhomTheirPagesName) {
  TextPdf pdf;
  for (const char* line : {"Account: A to ann@example.org", "and cy@example.org",
                           "Account: B to bob@example.org", "Account: C to dan@example.org"}) {
    pdf.page({line});
  }
  pdf.write(place.at("sums.pdf"));
  setup.emailEnable = setup.emailConfirm = true;
  QByteArrayList rows;
  for (const QStringList& more : {QStringList(), QStringList{"--planned", "plan"}}) {
    const QString folder = QStringLiteral("out%1").arg(more.size());
    plan(folder);
    const ProgramRun run = runPart("1-3", folder, more);
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QStringList lists = QDir(place.at(folder)).entryList({"*.lst"});
    ASSERT_EQ(lists.size(), 1);
    rows += contentOf(place.at(folder + u'/' + lists[0])).replace(folder.toUtf8(), "out");
  }
  EXPECT_EQ(rows[0], rows[1]);
  EXPECT_TRUE(rows[0].contains("bob@example.org") && !rows[0].contains("dan@example.org"));
}

TEST_F(ProgramParts, DoWhatThePlanSaysOrNothing) {
  const QByteArray whole = plan("out");
  const struct {
    const char* fault;
    QByteArray plan;
    const char* told;
    int code = -6;
  } rows[] = {
      {"the first documents pass for all", whole.first(whole.indexOf("C.pdf")), "was cut off"},
      {"one of a killed program, its lines whole",
       whole.first(whole.indexOf("{\"", whole.size() / 2)), "has no whole plan"},
      {"another PDF's", QByteArray(whole).replace("/sums.pdf", "/bums.pdf"), "has no whole plan"},
      {"another program's file", "{}\n", "is no plan"},
      {"written where the operator did not ask for it",
       QByteArray(whole).replace("out/C.pdf", "out/../C.pdf"), "does not lie in the output folder"},
      {"pages that are not there", QByteArray(whole).replace("\"total\":13", "\"total\":11"),
       "has outputs of pages that are not there"},
      {"outputs replace each other", QByteArray(whole).replace("\"renamed\"", "\"replaces\""),
       "was made with other settings"},
      {"an older file's", QByteArray(whole).replace("\"total\":13", "\"total\":14"),
       "is no longer the file that was planned", -15},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    EXPECT_NE(row.plan, whole);
    writeFile(place.at("plan"), row.plan);
    const ProgramRun run = runPart("1-13", "out", {"--planned", "plan"});
    EXPECT_EQ(run.exitCode, shown(row.code));
    EXPECT_TRUE(run.err.contains(row.told)) << run.err.toStdString();
    EXPECT_TRUE(outputs().isEmpty());
  }
  writeFile(place.at("plan"), whole);
  EXPECT_EQ(place.run({setupInto("out"), "-fsums.pdf", "--planned", "plan", "-c"}).exitCode,
            shown(-6));
  EXPECT_EQ(runPart("1-13", "out", {"--planned", "missing"}).exitCode, shown(-6));
  ASSERT_EQ(runPart("1-4", "out", {"--planned", "plan"}).exitCode, 0);
  const auto before = filesIn("out");
  EXPECT_EQ(runPart("1-7", "out", {"--planned", "plan"}).exitCode, shown(-13));
  EXPECT_EQ(filesIn("out").size(), before.size() + 1) << "what was free";
}

TEST_F(ProgramParts, TellWhatIsPlannedElsewhere) {
  const ProgramRun plan =
      place.run({setupInto("out"), "-fsums.pdf", "--pages", "5-7", "--plan=csv"});
  EXPECT_EQ(QString::fromUtf8(plan.out).remove(place.at("out/")),
            "Start Page,End Page,Matched,Output File,Note\n"
            "7,7,C,C.pdf,\n");
  EXPECT_TRUE(outputs().isEmpty());
  const ProgramRun run = runPart("5-7", "out");
  EXPECT_TRUE(run.err.contains("13 page(s): 1 in 1 file(s), 1 in no range (1), 11 of other parts "
                               "(2-6, 8-13)."))
      << run.err.toStdString();
  const ProgramRun none = runPart("5-6", "none");
  EXPECT_EQ(none.exitCode, 0);
  EXPECT_TRUE(none.err.startsWith("Done! - 0 PDF file(s) output\n")) << none.err.toStdString();
  EXPECT_FALSE(none.err.contains("no match"));
}

/// What is in the way belongs to somebody; another name would be one of another part.
TEST_F(ProgramParts, TakeNoOtherName) {
  ASSERT_EQ(runPart("1-4", "out").exitCode, 0);
  const auto before = filesIn("out");
  const ProgramRun again = runPart("1-4", "out");
  EXPECT_EQ(again.exitCode, shown(-13));
  EXPECT_TRUE(again.err.contains("out/A.pdf: pages 2-3 could not be written: there is a file of "
                                 "this name"))
      << again.err.toStdString();
  EXPECT_EQ(filesIn("out"), before);
  EXPECT_TRUE(rowsOf("sums.pdf_pages_1-4_report.csv", "out").isEmpty());
  const ProgramRun plan =
      place.run({setupInto("out"), "-fsums.pdf", "--pages", "1-4", "--plan=csv"});
  EXPECT_EQ(plan.out.count('\n'), 1) << plan.out.toStdString();
  EXPECT_TRUE(plan.err.contains("A.pdf: pages 2-3 cannot be written"));
}

TEST_F(ProgramParts, AreRefusedWhereTheyWouldNotAddUp) {
  const struct {
    const char* fault;
    std::function<void(SplitSetup&)> set;
  } rows[] = {
      {"appended in the order of chance", [](SplitSetup& rules) { rules.alwaysAppend = true; }},
      {"other parts cleared away",
       [](SplitSetup& rules) { rules.otherSettingsRemoveFiles = true; }},
      {"mailed in parts",
       [](SplitSetup& rules) {
         rules.emailEnable = true;
         rules.emailConfirm = false;
       }},
      {"lists replace each other", [](SplitSetup& rules) { rules.createList = true; }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    const SplitSetup before = setup;
    row.set(setup);
    const ProgramRun run = runPart("1-4", "out");
    EXPECT_EQ(run.exitCode, shown(-6)) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains("A part of the pages cannot be made together with"));
    EXPECT_TRUE(outputs().isEmpty());
    setup = before;
  }
  for (const char* range : {"4-1", "0-3", "5", "-", "1-x", "1-99999999999"}) {
    const ProgramRun run = runPart(range, "out");
    EXPECT_EQ(run.exitCode, shown(-6)) << range;
    EXPECT_TRUE(run.err.contains("needs a range of pages")) << run.err.toStdString();
    EXPECT_TRUE(outputs().isEmpty()) << "the whole was written in place of a part";
  }
}
