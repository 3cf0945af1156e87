// The same job for every row of a list.
#include "engine/job/BatchRun.h"
#include "tests/support/RunBench.h"

#include <sys/stat.h>

using namespace folivex;
using namespace folivex::test;

namespace {

class Rows : public BatchRows {
public:
  struct Row {
    QString path;
    QString use = QStringLiteral("Yes");
    QString status = QStringLiteral("Ready.");
    QString result = {};
  };

  int count() const override { return static_cast<int>(rows.size()); }
  QString useFlag(int row) const override { return rows[row].use; }
  QString path(int row) const override { return rows[row].path; }
  void setStatus(int row, const QString& status, const QString& result) override {
    rows[row].status = status;
    rows[row].result = result;
  }
  void showRow(int row) override { shown += QString::number(row); }

  QList<Row> rows;
  QStringList shown;
};

class Batch : public RunBench {
protected:
  Batch() {
    for (const char* name : {"a", "b", "c"}) {
      statements({QStringLiteral("Account: ") + name}).write(pdf(name));
    }
  }
  QString pdf(const char* name) const { return at(QStringLiteral("in/%1.pdf").arg(name)); }

  /// The statuses of a batch of these rows.
  QString batch(const QList<Rows::Row>& rows) {
    m_rows.rows = rows;
    m_result = driver().ProcessBatch(m_rows);
    QStringList all;
    for (const Rows::Row& row : m_rows.rows) {
      all += row.status;
    }
    return all.join(u'|');
  }

  Rows m_rows;
  BatchResult m_result;
};

} // namespace

TEST_F(Batch, FileThatCannotBeProcessedIsMarkedAndTheRestProcessed) {
  writeFile(pdf("b"), "no PDF at all");
  // Its text report cannot be made.
  QDir(folder()).mkpath("in/c.pdf_report.txt");
  ASSERT_EQ(mkfifo(QFile::encodeName(at("in/pipe")).constData(), 0600), 0);
  EXPECT_EQ(batch({{pdf("none")}, {pdf("b")}, {at("in")}, {at("in/pipe")}, {pdf("c")}, {pdf("a")}}),
            "file error|file error|file error|file error|file error|Done");
  EXPECT_EQ(outputs(), QStringList{"a.pdf: Account: a"});
  EXPECT_EQ(m_person.messages, QStringList{"Done!\n\n3 files processed"});
  EXPECT_TRUE(m_person.questions.isEmpty());
  EXPECT_EQ(m_person.notes.filter(pdf("b")).size(), 1) << m_person.allNotes().toStdString();
  EXPECT_EQ(m_person.notes.filter("in/c.pdf_report.txt, try changing").size(), 1);
  EXPECT_EQ(m_person.notes.filter("the file cannot be opened").size(), 3);
  EXPECT_FALSE(driver().state().automation);
  // Each row says what came of it: why it failed, or where its pages went.
  const char* results[] = {"The file is not there.",
                           "it is no PDF, or damaged beyond repair",
                           "The file cannot be read.",
                           "The file cannot be read.",
                           "in/c.pdf_report.txt, try changing",
                           "1 page(s): 1 in 1 file(s)."};
  for (int row = 0; row < m_rows.rows.size(); ++row) {
    const QString result = m_rows.rows[row].result;
    EXPECT_TRUE(result.contains(results[row])) << result.toStdString();
    EXPECT_FALSE(result.startsWith(m_rows.rows[row].path + ": ")) << result.toStdString();
  }
}

/// Who goes on with the file of before must not split the last one of the list by mistake, now or
/// after the next start.
TEST_F(Batch, TheFileOfTheSettingsStaysTheirs) {
  setup().fileName = "/in/mine.pdf";
  EXPECT_EQ(batch({{pdf("a")}, {pdf("b")}}), "Done|Done");
  EXPECT_EQ(setup().fileName, "/in/mine.pdf");
  EXPECT_EQ(m_store.working().fileName, "/in/mine.pdf");
  SetupStore next;
  ASSERT_TRUE(next.LoadSetup(next.DefaultSetupPath()).ok());
  EXPECT_EQ(next.edited().fileName, "/in/mine.pdf");
}

TEST_F(Batch, SettingsThatCannotBeSavedAreNoFaultOfTheFiles) {
  QDir(at("tmp")).mkdir("Folivex.ini");
  setup().emailEnable = true;
  m_rows.rows = {{pdf("a")}, {pdf("b")}};
  QStringList mailed;
  driver().ProcessBatch(m_rows, [&mailed](const QString& source) { mailed += source; });
  for (const Rows::Row& row : m_rows.rows) {
    EXPECT_EQ(row.status, "Done") << row.path.toStdString();
  }
  EXPECT_EQ(filesBelow(at("out")), (QStringList{"a.pdf", "b.pdf"}));
  EXPECT_EQ(mailed.size(), 2);
  EXPECT_EQ(m_person.notes.filter("can't write parameters file").size(), 1);

  // Unattended the run ends before its first output.
  driver().setAutomation(true);
  EXPECT_EQ(run(), RunError::SetupFile);
  EXPECT_EQ(filesBelow(at("out")).size(), 2);
}

TEST_F(Batch, OnlyRowsThatSayYes) {
  EXPECT_EQ(batch({{pdf("a"), "No"},
                   {pdf("b"), "Yes, No Stamp"},
                   {pdf("b"), "yes"},
                   {pdf("b"), ""},
                   {pdf("c")},
                   {pdf("c")}}),
            "Ready.|Ready.|Ready.|Ready.|Done|Done");
  EXPECT_EQ(m_result.processed, 2);
  EXPECT_EQ(m_rows.shown, (QStringList{"4", "5"}));
  EXPECT_EQ(filesBelow(at("out")), (QStringList{"c.pdf", "c_part002.pdf"}));
}

TEST_F(Batch, StopEndsTheWholeBatch) {
  m_person.onProgress = [this](const Progress& progress) {
    if (progress.text.contains("out/b.pdf")) {
      driver().Stop();
    }
  };
  EXPECT_EQ(batch({{pdf("a")}, {pdf("b")}, {pdf("c")}}), "Done|Stopped|Ready.");
  EXPECT_TRUE(m_result.stopped);
  m_person.messages.clear();
  batch({});
  EXPECT_EQ(m_person.messages, QStringList{"You must prepare a list first or load one"});
}

TEST_F(Batch, OneListOfNamesServesAllFilesAndEveryBatchBeginsIt) {
  writeFile(at("names.txt"), "one\ntwo\nthree\n");
  setup().extract = fileNameMethodTexts()[9];
  m_store.working().reportUseFileList = at("names.txt");
  for (const char* again : {"", "again"}) {
    SCOPED_TRACE(again);
    QDir(at("out")).removeRecursively();
    batch({{pdf("c")}, {pdf("a")}, {pdf("b")}});
    EXPECT_EQ(outputs(),
              (QStringList{"one.pdf: Account: c", "three.pdf: Account: b", "two.pdf: Account: a"}));
  }
}
