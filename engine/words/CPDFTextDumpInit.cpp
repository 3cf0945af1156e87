#include "engine/words/CPDFTextDumpInit.h"

namespace folivex {

CPDFTextDumpInit::CPDFTextDumpInit()
    : LoadedLibrary(QStringLiteral("GlyphrunU"), "GlyphrunInterfaceVersion",
                    GLYPHRUN_INTERFACE_VERSION) {
  if (!loaded) {
    return;
  }
  bind(PdfTextDumpFile, "PdfTextDumpFile");
  bind(GetPageCount, "GetPageCount");
  bind(getNumWords, "getNumWords");
  bind(wordToGet, "wordToGet");
  bind(getWordX, "getWordX");
  bind(getWordY, "getWordY");
  bind(getWordStr, "getWordStr");
  bind(getFont, "getFont");
  bind(getFontSize, "getFontSize");
  bind(DoSort, "DoSort");
  bind(DoReverseSort, "DoReverseSort");
  bind(RemoveDupes, "RemoveDupes");
  bind(PdfTextDumpCloseFile, "PdfTextDumpCloseFile");
  bind(PdfTextDumpOpenFile, "PdfTextDumpOpenFile");
  bind(PdfTextDumpFilePages, "PdfTextDumpFilePages");
  bind(GetPageCount2, "GetPageCount2");
  bind(GetProcessingStatus, "GetProcessingStatus");
  bind(GetProcessingPage, "GetProcessingPage");
  bind(SetWordSpacing, "SetWordSpacing");
  bind(SetReadAhead, "SetReadAhead");
  bind(GetPageState, "GetPageState");
  bind(GetFileFacts, "GetFileFacts");
  bind(GlyphrunLastError, "GlyphrunLastError");
  bind(GlyphrunLastErrorText, "GlyphrunLastErrorText");
  bind(GetOutlineCount, "GetOutlineCount");
  bind(GetOutlineEntry, "GetOutlineEntry");
  bind(OpenView, "OpenView");
  bind(SetViewWordSpacing, "SetViewWordSpacing");
  bind(CloseView, "CloseView");
  bind(AbortView, "AbortView");
  bind(GetViewPageCount, "GetViewPageCount");
  bind(GetViewPageSize, "GetViewPageSize");
  bind(RenderViewPage, "RenderViewPage");
  bind(ReleaseImage, "ReleaseImage");
  bind(GetViewWords, "GetViewWords");
}

QString CPDFTextDumpInit::lastErrorText() const {
  const char16_t* text = GlyphrunLastErrorText();
  return text ? QString::fromUtf16(text) : QString();
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
