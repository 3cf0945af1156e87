#include "engine/job/SourceFile.h"

#include "engine/base/Utf16.h"
#include "engine/job/JobContext.h"
#include "engine/job/OcrFirst.h"
#include "engine/output/CSplitPdfInit.h"
#include "engine/output/ExternalCommand.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "platform/Paths.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace folivex {

namespace {

/// What the text library said last, in words for those who have to do something about it.
QString whyNotRead(CPDFTextDumpInit& library) {
  const QString said = library.lastErrorText();
  switch (library.GetProcessingStatus()) {
  case GLYPHRUN_NOT_A_PDF:
    return QStringLiteral("it is no PDF, or damaged beyond repair (%1)").arg(said);
  case GLYPHRUN_UNSUPPORTED:
    return QStringLiteral("it is encrypted for certain persons, which no password opens (%1)")
        .arg(said);
  default:
    return said;
  }
}

/// A pipe or device may never come to an end, and neither library could be stopped.
bool isNoOrdinaryFile(const QString& path) {
  const QFileInfo file(path);
  return file.exists() && !file.isFile();
}

} // namespace

SourceFile::~SourceFile() {
  m_job.libraries.text.PdfTextDumpCloseFile();
  m_job.libraries.split.PdfTextDumpCloseFile();
}

QString SourceFile::scanned() const {
  return m_job.state.ocrFile.isEmpty() ? read() : m_job.state.ocrFile;
}

TextLibraryWords SourceFile::words(const SplitSetup& setup) const {
  return {m_job.libraries.text,
          {scanned(), setup.pdfPassword, setup.rotated, setup.horizWordSpacing},
          [&job = m_job](const QString& problem) { job.tell(RunFinding::Other, problem); }};
}

/// Where a library cannot read the source, what both can read is opened in its place.
int SourceFile::openRepaired(const SplitSetup& setup, void (SourceFile::*open)(const SplitSetup&)) {
  m_source = setup.fileName;
  if (isNoOrdinaryFile(m_source)) {
    m_problem = QStringLiteral("%1: is no ordinary file").arg(m_source);
    return 0;
  }
  (this->*open)(setup);
  if (m_problem.isEmpty()) {
    return m_pageCount;
  }
  m_standIn = m_job.libraries.text.standInFor(m_source, setup.pdfPassword);
  if (m_standIn) {
    const QString problem = std::exchange(m_problem, {});
    (this->*open)(setup);
    if (!m_problem.isEmpty()) {
      m_problem = problem;
    }
  }
  return pagesUnlessProblem();
}

int SourceFile::openForSplitting(const SplitSetup& setup) {
  m_job.person.progress({QStringLiteral("Getting page count"), 0, 0, 0});
  stamp(setup.fileName);
  if (const int pageCount = openRepaired(setup, &SourceFile::openBoth); pageCount > 0) {
    m_job.person.progress({QStringLiteral("Processing"), 0, pageCount, 0});
    if (isRecognised(setup)) {
      recogniseAndOpenWords(setup);
    }
  }
  return pagesUnlessProblem();
}

void SourceFile::openBoth(const SplitSetup& setup) {
  beginSplitting(setup);
  count(setup);
  // The reading of words begins while the split library still opens the file, unless a file that it
  // refuses would be read by the hour first.
  if (m_pageCount > 0 && !isRecognised(setup)) {
    openWords(setup);
  }
  endSplitting(setup);
}

int SourceFile::openForReading(const SplitSetup& setup) {
  if (!setup.ocrFirst) {
    return openAgain(setup);
  }
  if (countPages(setup) > 0) {
    recogniseAndOpenWords(setup);
  }
  return pagesUnlessProblem();
}

int SourceFile::openAgain(const SplitSetup& setup) {
  return openRepaired(setup, &SourceFile::openToRead);
}

void SourceFile::openToRead(const SplitSetup& setup) {
  count(setup);
  if (m_pageCount > 0) {
    openWords(setup);
  }
}

int SourceFile::countPages(const SplitSetup& setup) {
  return openRepaired(setup, &SourceFile::count);
}

void SourceFile::recogniseAndOpenWords(const SplitSetup& setup) {
  OcrFirst(m_source, platform::temporaryFolder(), m_job.state, m_job.person);
  if (!m_job.state.ocrFile.isEmpty()) {
    stamp(m_job.state.ocrFile);
  }
  openWords(setup);
  if (!m_problem.isEmpty() && !m_job.state.ocrFile.isEmpty()) {
    m_job.person.found(RunFinding::Recognition,
                       QStringLiteral("%1: this copy of \"%2\" with its recognised words is made "
                                      "anew when it is not there; remove it and run again")
                           .arg(m_job.state.ocrFile, m_source));
  }
}

void SourceFile::beginSplitting(const SplitSetup& setup) {
  m_splits = !usesExternalCommand(setup);
  if (m_splits) {
    m_job.libraries.split.SetWriteBehind(1);
    m_job.libraries.split.BeginOpenFile(utf16(read()), utf16(setup.pdfPassword));
  }
}

void SourceFile::count(const SplitSetup& setup) {
  m_pageCount = m_job.libraries.text.GetPageCount(utf16(read()), utf16(setup.pdfPassword));
  if (m_pageCount <= 0) {
    m_pageCount = 0;
    m_problem = QStringLiteral("%1: cannot be opened for reading its words: %2")
                    .arg(m_source, whyNotRead(m_job.libraries.text));
  }
}

void SourceFile::endSplitting(const SplitSetup& setup) {
  if (!m_splits) {
    return;
  }
  constexpr int waitStepMs = 20;
  do { // a large file is opened for seconds
    m_job.person.handlePendingEvents();
  } while (m_job.libraries.split.WaitForOpening(waitStepMs) != 0);
  m_job.libraries.split.SetKeepBookmarks(setup.keepBookmarks ? 1 : 0);
  const int result =
      m_job.libraries.split.PdfTextDumpOpenFile(utf16(read()), utf16(setup.pdfPassword));
  if (result == CSplitPdfInit::cannotOpen && !QFileInfo::exists(m_source)) {
    m_problem =
        QStringLiteral("Unable to open file, try closing app and re-opening: %1").arg(m_source);
  } else if (result != CSplitPdfInit::ok && m_pageCount > 0) {
    m_problem = QStringLiteral("%1: cannot be opened for splitting: %2")
                    .arg(m_source, m_job.libraries.split.lastErrorText());
  } else if (const int other = m_job.libraries.split.GetPageCount2();
             m_problem.isEmpty() && other != m_pageCount) {
    m_problem = QStringLiteral("%1: is damaged: one reading finds %2 page(s), another %3; it is "
                               "not split, since pages could be lost")
                    .arg(m_source)
                    .arg(m_pageCount)
                    .arg(other);
  }
}

void SourceFile::openWords(const SplitSetup& setup) {
  const QString fileToScan = scanned();
  m_job.libraries.text.SetWordSpacing(setup.horizWordSpacing);
  m_job.libraries.text.SetReadAhead(CPDFTextDumpInit::threadsAhead());
  m_job.libraries.text.PdfTextDumpOpenFile(utf16(fileToScan), utf16(setup.pdfPassword));
  if (m_job.libraries.text.GetProcessingStatus() != GLYPHRUN_OK) {
    m_problem = QStringLiteral("%1: cannot be opened for reading its words: %2")
                    .arg(fileToScan, m_job.libraries.text.lastErrorText());
  } else if (const int pages = m_job.libraries.text.GetPageCount2(); pages != m_pageCount) {
    m_problem = QStringLiteral("%1: has %2 page(s), its source %3")
                    .arg(fileToScan)
                    .arg(pages)
                    .arg(m_pageCount);
  }
}

void SourceFile::stamp(const QString& path) {
  m_stamps.push_back({path, platform::FileStamp::beforeReading(path)});
}

bool SourceFile::isChanged() const {
  return std::ranges::any_of(m_stamps, [](const Stamped& file) {
    return platform::FileStamp::of(file.path) != file.stamp;
  });
}

QString SourceFile::repair() const {
  return !m_standIn
             ? QString()
             : QStringLiteral("cannot be read as it stands; the %1 page(s) that can be found "
                              "are read from a repaired copy")
                   .arg(m_pageCount);
}

QString SourceFile::protection() const {
  // The words may come from an OCR'd copy, which is never protected: the source is asked too.
  const int facts = m_job.libraries.text.GetFileFacts();
  const bool forbids = (facts & GLYPHRUN_FILE_FORBIDS_EXTRACTION) != 0;
  const bool encrypted =
      (facts & GLYPHRUN_FILE_ENCRYPTED) != 0 ||
      (m_splits && (m_job.libraries.split.GetFileFacts() & CSplitPdfInit::fileEncrypted) != 0);
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
