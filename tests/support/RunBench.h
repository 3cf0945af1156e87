// RunBench: whole runs of the engine over real files, with the real libraries.
#pragma once

#include "engine/job/JobDriver.h"
#include "engine/naming/FileNameMethod.h"
#include "engine/output/CAppendPdfInit.h"
#include "engine/output/CSplitPdfInit.h"
#include "engine/plan/SplitMethod.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "tests/support/AtTestEnd.h"
#include "tests/support/Programs.h"
#include "tests/support/RecordingOperator.h"
#include "tests/support/TextPdf.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QTemporaryDir>

#include <memory>

namespace folivex::test {

/// The three libraries of this build. They are looked for beside the running program, which a test
/// is not; but one that is loaded already is found by its name alone.
struct RealLibraries {
  static RealLibraries& get() {
    static RealLibraries libraries;
    return libraries;
  }
  JobDriver::Libraries all() { return {*text, *split, *append}; }

  std::unique_ptr<CPDFTextDumpInit> text;
  std::unique_ptr<CSplitPdfInit> split;
  std::unique_ptr<CAppendPdfInit> append;

private:
  RealLibraries() {
    static int argumentCount = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(argumentCount, arguments);
    for (const char* library : {"GlyphrunU", "CleftorU", "MelderU"}) {
      QLibrary file(QStringLiteral(FOLIVEX_BIN_DIR "/lib%1.so").arg(QLatin1String(library)));
      EXPECT_TRUE(file.load()) << file.errorString().toStdString();
    }
    text = std::make_unique<CPDFTextDumpInit>();
    split = std::make_unique<CSplitPdfInit>();
    append = std::make_unique<CAppendPdfInit>();
    EXPECT_TRUE(text->loaded && split->loaded && append->loaded);
    test::atTestEnd([this] {
      append.reset();
      split.reset();
      text.reset();
    });
  }
};

/// One page a text: "Account: NUMBER" pages begin documents, the others continue them.
inline TextPdf statements(const QStringList& pages) {
  TextPdf pdf;
  for (const QString& text : pages) {
    pdf.page({text});
  }
  return pdf;
}

/// A folder with "in", "out" and "tmp" in it, and a driver whose temporary folder the last one is.
/// Splits "in/a.pdf" from match to next match at "Account:", named after the next word, until a
/// test says otherwise.
class RunBench : public testing::Test {
protected:
  RunBench() {
    for (const char* name : {"in", "out", "tmp"}) {
      QDir(folder()).mkdir(QLatin1String(name));
    }
    m_temporaryBefore = qgetenv("TMPDIR");
    qputenv("TMPDIR", QFile::encodeName(at("tmp")));
    setup().fileName = source();
    setup().outputDir = at("out");
    setup().findString = QStringLiteral("Account:");
    setup().pageExtract = splitMethodTexts()[0];
    setup().extract = fileNameMethodTexts()[1];
    setup().prefixFileName.clear();
    m_driver = std::make_unique<JobDriver>(m_store, RealLibraries::get().all(), m_person);
  }
  ~RunBench() override { qputenv("TMPDIR", m_temporaryBefore); }

  QString folder() const { return m_folder.path(); }
  QString at(const QString& name) const { return m_folder.filePath(name); }
  QString at(const char* name) const { return at(QString::fromUtf8(name)); }
  QString source() const { return at("in/a.pdf"); }
  SplitSetup& setup() { return m_store.edited(); }
  JobDriver& driver() { return *m_driver; }

  RunError run() { return driver().StartProcessing(); }

  /// Every output with the texts of its pages: "out/1001.pdf: Account: 1001 | more".
  QStringList outputs(const char* below = "out") const {
    QStringList listing;
    for (const QString& name : filesBelow(at(below))) {
      if (name.endsWith(QLatin1String(".pdf"))) {
        listing += name + QStringLiteral(": ") +
                   pageTexts(at(QString::fromUtf8(below) + QLatin1Char('/') + name))
                       .join(QStringLiteral(" | "));
      }
    }
    return listing;
  }

  /// A report's range lines, blanks squeezed.
  QStringList reportLines(const char* name = "in/a.pdf_report.csv") const {
    QStringList lines;
    for (const QByteArray& line : contentOf(at(name)).split('\n')) {
      const QString text = QString::fromUtf8(line).simplified();
      if (!text.isEmpty() && (text[0].isDigit() || text.startsWith(u','))) {
        lines += QString(text).remove(folder() + QLatin1Char('/'));
      }
    }
    return lines;
  }

  QTemporaryDir m_folder;
  QByteArray m_temporaryBefore;
  SetupStore m_store;
  RecordingOperator m_person;
  std::unique_ptr<JobDriver> m_driver;
};

} // namespace folivex::test
