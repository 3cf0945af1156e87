// RunBench: whole runs of the engine over real files, with the real libraries.
#pragma once

#include "engine/job/JobDriver.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "tests/support/OwnFolder.h"
#include "tests/support/Programs.h"
#include "tests/support/RealLibraries.h"
#include "tests/support/RecordingOperator.h"
#include "tests/support/TextPdf.h"

#include <memory>

namespace folivex::test {

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
class RunBench : public OwnFolder {
protected:
  RunBench() {
    QDir(folder()).mkdir("in");
    QDir(folder()).mkdir("out");
    setup().fileName = source();
    setup().outputDir = at("out");
    setup().findString = QStringLiteral("Account:");
    setup().pageExtract = splitMethodTexts()[0];
    setup().extract = fileNameMethodTexts()[1];
    setup().prefixFileName.clear();
    m_driver = std::make_unique<JobDriver>(m_store, RealLibraries::get().all(), m_person);
  }

  QString folder() const { return m_folder.path(); }
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

  SetupStore m_store;
  RecordingOperator m_person;
  std::unique_ptr<JobDriver> m_driver;
};

} // namespace folivex::test
