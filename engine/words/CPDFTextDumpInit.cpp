#include "engine/words/CPDFTextDumpInit.h"

namespace folivex {

CPDFTextDumpInit::CPDFTextDumpInit()
    : LoadedLibrary(QStringLiteral("GlyphrunU"), "GlyphrunInterfaceVersion",
                    GLYPHRUN_INTERFACE_VERSION) {}

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
  const char16_t* text = m_library.getWordStr();
  QStringView view;
  if (text) {
    qsizetype length = 0;
    while (length < maxWordLength && text[length] != u'\0') {
      ++length;
    }
    view = QStringView(text, length);
  }
  return {view, m_library.getWordX(), m_library.getWordY()};
}

} // namespace folivex
