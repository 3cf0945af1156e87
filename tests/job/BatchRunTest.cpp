// The same job for every row of a list.
#include "engine/job/BatchRun.h"
#include "tests/support/RunBench.h"

#include <sys/stat.h>

using namespace folivex;
using namespace folivex::test;

namespace {

struct Row {
  QString use;
  QString path;
  QString status = QStringLiteral("Ready.");
};

class Rows : public BatchRows {
public:
  int count() const override { return static_cast<int>(rows.size()); }
  QString useFlag(int row) const override { return at(row).use; }
  QString path(int row) const override { return at(row).path; }
  void setStatus(int row, const QString& status) override {
    rows[static_cast<std::size_t>(row)].status = status;
  }
  void showRow(int row) override { shown += QString::number(row); }
  const Row& at(int row) const { return rows[static_cast<std::size_t>(row)]; }

  QStringList statuses() const {
    QStringList all;
    for (const Row& row : rows) {
      all += row.status;
    }
    return all;
  }

  std::vector<Row> rows;
  QStringList shown;
};

class Batch : public RunBench {
protected:
  Batch() {
    for (const char* name : {"in/a.pdf", "in/b.pdf", "in/c.pdf"}) {
      statements({QStringLiteral("Account: ") + QString::fromUtf8(name).mid(3, 1)}).write(at(name));
    }
  }
  Row use(const char* name) const { return {QStringLiteral("Yes"), at(name)}; }

  Rows m_rows;
};

} // namespace

TEST_F(Batch, MissingFileIsMarkedAndTheRestProcessed) {
  m_rows.rows = {use("in/a.pdf"), use("in/none.pdf"), use("in/c.pdf")};
  const BatchResult result = driver().ProcessBatch(m_rows);
  EXPECT_EQ(result.processed, 2);
  EXPECT_EQ(m_rows.statuses(), (QStringList{"Done", "file error", "Done"}));
  EXPECT_EQ(outputs(), (QStringList{"a.pdf: Account: a", "c.pdf: Account: c"}));
  EXPECT_EQ(m_person.messages, QStringList{"Done!\n\n2 files processed"});
  EXPECT_TRUE(m_person.questions.isEmpty());
  EXPECT_FALSE(driver().state().automation);
}

TEST_F(Batch, OnlyRowsThatSayYes) {
  m_rows.rows = {{"No", at("in/a.pdf")},  {"Yes, No Stamp", at("in/b.pdf")},
                 {"yes", at("in/b.pdf")}, {"", at("in/b.pdf")},
                 use("in/c.pdf"),         use("in/c.pdf")};
  EXPECT_EQ(driver().ProcessBatch(m_rows).processed, 2);
  EXPECT_EQ(m_rows.statuses(),
            (QStringList{"Ready.", "Ready.", "Ready.", "Ready.", "Done", "Done"}));
  EXPECT_EQ(m_rows.shown, (QStringList{"4", "5"}));
  EXPECT_EQ(filesBelow(at("out")), (QStringList{"c.pdf", "c_part002.pdf"}));
}

TEST_F(Batch, FileThatCannotBeProcessedIsNotDone) {
  writeFile(at("in/b.pdf"), "no PDF at all");
  // Its text report cannot be made.
  QDir(folder()).mkpath("in/c.pdf_report.txt");
  ASSERT_EQ(mkfifo(QFile::encodeName(at("in/pipe")).constData(), 0600), 0);
  m_rows.rows = {use("in/b.pdf"), use("in"), use("in/pipe"), use("in/c.pdf"), use("in/a.pdf")};
  driver().ProcessBatch(m_rows);
  EXPECT_EQ(m_rows.statuses(),
            (QStringList{"file error", "file error", "file error", "file error", "Done"}));
  EXPECT_EQ(m_person.messages.size(), 1) << m_person.messages.join('\n').toStdString();
  EXPECT_EQ(m_person.notes.filter(at("in/b.pdf")).size(), 1) << m_person.allNotes().toStdString();
  EXPECT_EQ(m_person.notes.filter("in/c.pdf_report.txt, try changing").size(), 1);
}

TEST_F(Batch, StopEndsTheWholeBatch) {
  m_rows.rows = {use("in/a.pdf"), use("in/b.pdf"), use("in/c.pdf")};
  m_person.onProgress = [this](const Progress& progress) {
    if (progress.text.contains("out/b.pdf")) {
      driver().Stop();
    }
  };
  const BatchResult result = driver().ProcessBatch(m_rows);
  EXPECT_TRUE(result.stopped);
  EXPECT_EQ(m_rows.statuses(), (QStringList{"Done", "Stopped", "Ready."}));
}

TEST_F(Batch, EmptyListIsRefused) {
  driver().ProcessBatch(m_rows);
  EXPECT_EQ(m_person.messages, QStringList{"You must prepare a list first or load one"});
}

TEST_F(Batch, OneListOfNamesServesAllFilesAndEveryBatchBeginsIt) {
  writeFile(at("names.txt"), "one\ntwo\nthree\n");
  setup().extract = fileNameMethodTexts()[9];
  m_store.working().reportUseFileList = at("names.txt");
  for (const char* again : {"", "again"}) {
    SCOPED_TRACE(again);
    QDir(at("out")).removeRecursively();
    m_rows.rows = {use("in/c.pdf"), use("in/a.pdf"), use("in/b.pdf")};
    driver().ProcessBatch(m_rows);
    EXPECT_EQ(outputs(),
              (QStringList{"one.pdf: Account: c", "three.pdf: Account: b", "two.pdf: Account: a"}));
  }
}
