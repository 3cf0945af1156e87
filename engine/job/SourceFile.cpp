#include "engine/job/SourceFile.h"

#include "engine/output/CSplitPdfInit.h"
#include "engine/output/ExternalCommand.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "engine/words/Utf16.h"

#include <QFileInfo>
#include <QThread>

#include <algorithm>

namespace folivex {

namespace {

/// Each thread holds the file's page tree once more, so that many of them cost more than they
/// bring.
int readAheadThreads() {
  constexpr int most = 4;
  return std::clamp(QThread::idealThreadCount(), 1, most);
}

/// A pipe or device may never come to an end, and neither library could be stopped.
bool isNoOrdinaryFile(const QString& path) {
  const QFileInfo file(path);
  return file.exists() && !file.isFile();
}

} // namespace

SourceFile::~SourceFile() {
  m_libraries.text.PdfTextDumpCloseFile();
  m_libraries.split.PdfTextDumpCloseFile();
}

void SourceFile::beginForSplitting(const QString& source, const SplitSetup& setup) {
  m_splits = !usesExternalCommand(setup) && !isNoOrdinaryFile(source);
  if (m_splits) {
    m_libraries.split.SetWriteBehind(1);
    m_libraries.split.BeginOpenFile(utf16(source), utf16(setup.pdfPassword));
  }
}

int SourceFile::countPages(const QString& source, const SplitSetup& setup) {
  if (isNoOrdinaryFile(source)) {
    m_problem = QStringLiteral("%1: is no ordinary file").arg(source);
    return 0;
  }
  m_pageCount = m_libraries.text.GetPageCount(utf16(source), utf16(setup.pdfPassword));
  if (m_pageCount <= 0) {
    m_pageCount = 0;
    m_problem = QStringLiteral("%1: cannot be opened for reading its words: %2")
                    .arg(source, m_libraries.text.lastErrorText());
  }
  return m_pageCount;
}

void SourceFile::openForSplitting(const QString& source, const SplitSetup& setup) {
  if (!m_splits) {
    return;
  }
  m_libraries.split.SetKeepBookmarks(setup.keepBookmarks ? 1 : 0);
  const int result = m_libraries.split.PdfTextDumpOpenFile(utf16(source), utf16(setup.pdfPassword));
  if (result == CSplitPdfInit::cannotOpen && !QFileInfo::exists(source)) {
    m_problem =
        QStringLiteral("Unable to open file, try closing app and re-opening: %1").arg(source);
  } else if (result != CSplitPdfInit::ok) {
    m_problem = QStringLiteral("%1: cannot be opened for splitting: %2")
                    .arg(source, m_libraries.split.lastErrorText());
  } else if (const int other = m_libraries.split.GetPageCount2();
             m_problem.isEmpty() && other != m_pageCount) {
    m_problem = QStringLiteral("%1: is damaged: one reading finds %2 page(s), another %3; it is "
                               "not split, since pages could be lost")
                    .arg(source)
                    .arg(m_pageCount)
                    .arg(other);
  }
}

void SourceFile::openWords(const QString& fileToScan, const SplitSetup& setup) {
  m_libraries.text.SetWordSpacing(setup.horizWordSpacing);
  m_libraries.text.SetReadAhead(readAheadThreads());
  m_libraries.text.PdfTextDumpOpenFile(utf16(fileToScan), utf16(setup.pdfPassword));
  if (m_libraries.text.GetProcessingStatus() != GLYPHRUN_OK) {
    m_problem = QStringLiteral("%1: cannot be opened for reading its words: %2")
                    .arg(fileToScan, m_libraries.text.lastErrorText());
  } else if (const int pages = m_libraries.text.GetPageCount2(); pages != m_pageCount) {
    m_problem = QStringLiteral("%1: has %2 page(s), its source %3")
                    .arg(fileToScan)
                    .arg(pages)
                    .arg(m_pageCount);
  }
}

QString SourceFile::protection() const {
  // The words may come from an OCR'd copy, which is never protected: the source is asked too.
  const int facts = m_libraries.text.GetFileFacts();
  const bool forbids = (facts & GLYPHRUN_FILE_FORBIDS_EXTRACTION) != 0;
  const bool encrypted =
      (facts & GLYPHRUN_FILE_ENCRYPTED) != 0 ||
      (m_splits && (m_libraries.split.GetFileFacts() & CSplitPdfInit::fileEncrypted) != 0);
  if (!forbids && !encrypted) {
    return {};
  }
  QString told = forbids ? QStringLiteral("the file's permissions forbid taking its text out; it "
                                          "is processed")
                         : QStringLiteral("the file is protected");
  if (m_splits) {
    told += forbids ? QStringLiteral(", and the outputs are written unprotected")
                    : QStringLiteral("; the outputs are written unprotected");
  }
  return told;
}

} // namespace folivex
