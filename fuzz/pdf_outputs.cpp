// Any bytes as the file that is split, repaired, appended, and appended to. What was written opens
// with the pages that it must have; a refused append leaves the receiving file as it was, byte for
// byte.
#include "engine/output/CAppendPdfInit.h"
#include "engine/output/CSplitPdfInit.h"
#include "fuzz/Targets.h"
#include "tests/support/PdfBuilder.h"

#include <QFile>

#include <algorithm>
#include <array>

namespace fuzzing {

namespace {

using folivex::CAppendPdfInit;
using folivex::CSplitPdfInit;

constexpr int mostPages = 4;

struct Libraries {
  Libraries() { require(split.loaded && append.loaded); }

  static Libraries& get() {
    static Libraries& libraries = *new Libraries; // unloaded, they would seem to leak
    return libraries;
  }

  CSplitPdfInit split;
  CAppendPdfInit append;
};

/// One page with a field, a name and a bookmark.
QByteArray goodFile() {
  testpdf::PdfBuilder pdf;
  const int field = pdf.add("<</Subtype/Widget/FT/Tx/T(f)/V(v)/Rect[0 0 1 1]>>");
  const int page = pdf.addPage("", "", "/Annots[" + pdf.ref(field) + ']');
  const int outline = pdf.reserve();
  const int entry = pdf.add("<</Title(b)/Parent " + pdf.ref(outline) + "/Dest(n)>>");
  pdf.set(outline, "<</First " + pdf.ref(entry) + "/Last " + pdf.ref(entry) + "/Count 1>>");
  pdf.addToCatalog("/Outlines " + pdf.ref(outline) + "/AcroForm<</Fields[" + pdf.ref(field) +
                   "]>>/Names<</Dests<</Names[(n)[" + pdf.ref(page) + "/Fit]]>>>>");
  return QByteArray::fromStdString(pdf.finish());
}

int pagesIn(CSplitPdfInit& split, const QString& path) {
  const bool opened = split.PdfTextDumpOpenFile(path.toStdU16String().c_str(), u"") == split.ok;
  const int pages = opened ? split.GetPageCount2() : 0;
  split.PdfTextDumpCloseFile();
  return pages;
}

/// Whole or not at all.
void checkOutput(CSplitPdfInit& split, const QString& path, bool isWritten, int pages) {
  require(QFile::exists(path) == isWritten);
  if (isWritten) {
    require(pagesIn(split, path) == pages);
    QFile::remove(path);
  }
}

void splitAll(CSplitPdfInit& split, const QString& source) {
  const int pages = pagesIn(split, source);
  const QString target = workPath(QStringLiteral("output.pdf"));
  const std::u16string targetName = target.toStdU16String();
  const auto write = [&](const auto& ranges, int expected) {
    require(split.PdfTextDumpOpenFile(source.toStdU16String().c_str(), u"") == split.ok);
    const int code = split.SplitPdfRanges(targetName.c_str(), ranges.data(),
                                          static_cast<int>(ranges.size()) / 2, pages);
    split.PdfTextDumpCloseFile();
    checkOutput(split, target, code == split.ok, expected);
  };
  for (const int keep : {0, 1}) {
    split.SetKeepBookmarks(keep);
    for (int page = 1; page <= std::min(pages, mostPages); ++page) {
      write(std::array{page, page}, 1);
    }
  }
  if (pages > 1) {
    const int last = std::min(pages, mostPages);
    write(std::array{1, last}, last);
    write(std::array{last, last, 1, last}, last + 1);
  }
}

void appendOrLeave(Libraries& libraries, const QString& addition, const QString& existing) {
  const QByteArray before = workFile(existing);
  const bool appended =
      libraries.append.getAppendPDFToFile(addition.toStdU16String().c_str(),
                                          existing.toStdU16String().c_str(), u"") != 0;
  if (appended) {
    require(pagesIn(libraries.split, existing) > 1);
  } else {
    require(workFile(existing) == before && !libraries.append.lastErrorText().isEmpty());
  }
}

} // namespace

void runPdfOutputs(const QByteArray& input) {
  Libraries& libraries = Libraries::get();
  const QString any = workPath(QStringLiteral("any.pdf"));
  const QString good = workPath(QStringLiteral("good.pdf"));
  writeWorkFile(any, input);
  splitAll(libraries.split, any);
  checkRepair(any, libraries.split.RepairFile,
              [&](const QString& path) { return pagesIn(libraries.split, path); });
  writeWorkFile(good, goodFile());
  appendOrLeave(libraries, any, good);
  appendOrLeave(libraries, any, good);
  writeWorkFile(good, goodFile());
  appendOrLeave(libraries, good, any);
  appendOrLeave(libraries, good, any);
}

} // namespace fuzzing
