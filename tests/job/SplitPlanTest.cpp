// A plan tells what the run then does, and does nothing itself.
#include "tests/support/Rows.h"
#include "tests/support/RunBench.h"

using namespace folivex;
using namespace folivex::test;

namespace {

/// "pages file fate" for each output.
class Plan : public RunBench {
protected:
  Plan() {
    statements({"Account: A", "Account: A", "Account: B", "more", "Account: A"}).write(source());
  }

  QStringList planned(const SplitPlan& plan) const {
    QStringList lines;
    for (const PlannedOutput& output : plan.outputs) {
      lines += QStringLiteral("%1-%2 %3 %4")
                   .arg(output.firstPage)
                   .arg(output.lastPage)
                   .arg(QString(output.path).remove(at("out/")), fateText(output.fate))
                   .trimmed();
    }
    return lines;
  }
};

} // namespace

TEST_F(Plan, Fates) {
  forEachRow("job/fates.json", [this](const SplitSetup& row, const QStringList& fates) {
    QDir(at("out")).removeRecursively();
    QDir(folder()).mkdir("out");
    statements({"old"}).write(at("out/B.pdf"));
    setup().alwaysOverwrite = row.alwaysOverwrite;
    setup().alwaysAppend = row.alwaysAppend;
    setup().otherSettingsRemoveFiles = row.otherSettingsRemoveFiles;
    setup().pageExtract = row.pageExtract;
    const QStringList before = filesBelow(folder());

    const SplitPlan plan = driver().Plan();
    EXPECT_EQ(planned(plan).join('|'), QString(fates[0]).replace("#", "name taken, number added"));
    EXPECT_EQ(filesBelow(folder()), before);
    EXPECT_EQ(outputs(), QStringList{"B.pdf: old"});

    EXPECT_EQ(run(), RunError::None);
    EXPECT_EQ(m_person.notes.back(), plan.account.summary(plan.fileCount));
    QStringList files = filesBelow(at("out"));
    if (!row.otherSettingsRemoveFiles && !row.alwaysAppend && !row.alwaysOverwrite) {
      files.removeAll("B.pdf"); // the old one
    }
    QStringList foreseen;
    for (const PlannedOutput& output : plan.outputs) {
      foreseen += QString(output.path).remove(at("out/"));
    }
    foreseen.removeDuplicates();
    foreseen.sort();
    EXPECT_EQ(files, foreseen);
  });
}

TEST_F(Plan, UsesUpNeitherNumbersNorLines) {
  writeFile(at("list.txt"), "one\ntwo\nthree\nfour\n");
  m_store.working().reportUseFileList = at("list.txt");
  for (const int method : {5, 9}) {
    setup().extract = fileNameMethodTexts()[method];
    const QStringList first = planned(driver().Plan());
    EXPECT_EQ(planned(driver().Plan()), first);
    EXPECT_TRUE(first[0].endsWith(method == 5 ? "000001.pdf" : "one.pdf"))
        << first[0].toStdString();
  }
}

TEST_F(Plan, ProblemsAreTold) {
  writeFile(source(), "no PDF");
  EXPECT_TRUE(driver().Plan().problem.startsWith(source() + ": "));
  EXPECT_EQ(driver().state().error, RunError::Unreadable);
  setup().findString = "two words";
  setup().pageExtract = splitMethodTexts()[2];
  EXPECT_TRUE(driver().Plan().problem.contains("only one word is allowed"));
}
