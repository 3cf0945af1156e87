// Any bytes as a PDF: its words in both orders, its outline, small pictures of its pages, a
// repaired copy.
#include "engine/words/CPDFTextDumpInit.h"
#include "fuzz/Targets.h"

#include <algorithm>

namespace fuzzing {

namespace {

constexpr int mostPages = 4;
constexpr double pictureScale = 0.1; ///< pixels a point

folivex::CPDFTextDumpInit& textLibrary() {
  static auto& library = *new folivex::CPDFTextDumpInit; // unloaded, it would seem to leak
  require(library.loaded);
  return library;
}

/// What the library hands out must be readable to its end.
void readWords(folivex::CPDFTextDumpInit& text) {
  for (int i = -1; i <= text.getNumWords(); ++i) {
    text.wordToGet(i);
    require(QString::fromUtf16(text.getWordStr()).size() >= 0 &&
            QString::fromUtf16(text.getFont()).size() >= 0);
  }
}

void readPages(folivex::CPDFTextDumpInit& text, const char16_t* path) {
  const int pages = std::min(text.GetPageCount(path, u""), mostPages);
  text.PdfTextDumpOpenFile(path, u"");
  for (int page = 1; page <= pages; ++page) {
    text.PdfTextDumpFilePages(page, page);
    readWords(text);
    text.DoReverseSort();
    text.RemoveDupes();
    readWords(text);
  }
  for (int i = 0, count = text.GetOutlineCount(); i < count; ++i) {
    GlyphrunOutlineEntry entry = {};
    require(text.GetOutlineEntry(i, &entry) == GLYPHRUN_OK && entry.level >= 0 &&
            entry.page <= text.GetPageCount2());
  }
  text.PdfTextDumpCloseFile();
}

/// A view must see the same words as the operations without one.
void readView(folivex::CPDFTextDumpInit& text, const char16_t* path) {
  int32_t result = 0;
  GlyphrunView* const view = text.OpenView(path, u"", &result);
  if (view == nullptr) {
    require(result != GLYPHRUN_OK);
    return;
  }
  for (int page = 1, count = std::min(text.GetViewPageCount(view), mostPages); page <= count;
       ++page) {
    double width = 0;
    double height = 0;
    text.GetViewPageSize(view, page, &width, &height);
    GlyphrunImage image = {};
    if (text.RenderViewPage(view, page, pictureScale, &image) == GLYPHRUN_OK) {
      text.ReleaseImage(&image);
    }
    const GlyphrunWord* words = nullptr;
    const int found = text.GetViewWords(view, page, &words);
    for (int i = 0; i < found; ++i) {
      require(words[i].page == page && words[i].text[0] != u'\0');
    }
  }
  text.CloseView(view);
}

} // namespace

void runPdfWords(const QByteArray& input) {
  folivex::CPDFTextDumpInit& text = textLibrary();
  const QString path = workPath(QStringLiteral("words.pdf"));
  writeWorkFile(path, input);
  const std::u16string name = path.toStdU16String();
  readPages(text, name.c_str());
  readView(text, name.c_str());
  checkRepair(path, text.RepairFile, [&text](const QString& copy) {
    return text.GetPageCount(copy.toStdU16String().c_str(), u"");
  });
}

} // namespace fuzzing
