#include "engine/words/TextLibraryWords.h"

#include "engine/words/CPDFTextDumpInit.h"

namespace folivex {

PageState pageStateOf(int libraryState) {
  switch (libraryState) {
  case GLYPHRUN_PAGE_EMPTY:
    return PageState::Empty;
  case GLYPHRUN_PAGE_UNREADABLE:
    return PageState::Unreadable;
  case GLYPHRUN_PAGE_DAMAGED:
    return PageState::Damaged;
  default:
    return PageState::Good;
  }
}

void TextLibraryWords::filePages(int first, int last) {
  m_library.PdfTextDumpFilePages(first, last);
}

int TextLibraryWords::numWords() {
  return m_library.getNumWords();
}

void TextLibraryWords::doReverseSort() {
  m_library.DoReverseSort();
}

PageWord TextLibraryWords::word(int index) {
  m_library.wordToGet(index);
  return {wordText(m_library.getWordStr()), m_library.getWordX(), m_library.getWordY()};
}

PageState TextLibraryWords::pageState() {
  return pageStateOf(m_library.GetPageState());
}

std::vector<Bookmark> TextLibraryWords::outline() {
  std::vector<Bookmark> outline;
  const int count = m_library.GetOutlineCount();
  for (int i = 0; i < count; ++i) {
    GlyphrunOutlineEntry entry = {};
    if (m_library.GetOutlineEntry(i, &entry) == GLYPHRUN_OK) {
      outline.push_back(
          {entry.title ? QString::fromUtf16(entry.title) : QString(), entry.level, entry.page});
    }
  }
  return outline;
}

} // namespace folivex
