// CPDFTextDumpInit: the loaded text library.
#pragma once

#include "engine/words/WordSource.h"
#include "platform/LoadedLibrary.h"

#include <glyphrun/glyphrun.h>

#include <QString>

namespace folivex {

/// The text library with its operations, bound by name in the order in which they stand here. One
/// state for the whole process lies behind them (see glyphrun.h).
class CPDFTextDumpInit : public platform::LoadedLibrary {
public:
  CPDFTextDumpInit();

private:
  template <typename S> using Operation = platform::Operation<S>;

public:
  Operation<void(const char16_t*, const char16_t*, int32_t, int32_t)> PdfTextDumpFile;
  Operation<int32_t(const char16_t*, const char16_t*)> GetPageCount;
  Operation<int32_t()> getNumWords;
  Operation<void(int32_t)> wordToGet;
  Operation<int32_t()> getWordX;
  Operation<int32_t()> getWordY;
  Operation<const char16_t*()> getWordStr;
  Operation<const char16_t*()> getFont;
  Operation<int32_t()> getFontSize;
  Operation<void()> DoSort;
  Operation<void()> DoReverseSort;
  Operation<void()> RemoveDupes;
  Operation<void()> PdfTextDumpCloseFile;
  Operation<void(const char16_t*, const char16_t*)> PdfTextDumpOpenFile;
  Operation<void(int32_t, int32_t)> PdfTextDumpFilePages;
  Operation<int32_t()> GetPageCount2;
  Operation<int32_t()> GetProcessingStatus;
  Operation<int32_t()> GetProcessingPage;

  // Beyond the operations that every text library of the family has.
  Operation<void(double)> SetWordSpacing;
  Operation<void(int32_t)> SetReadAhead;
  Operation<int32_t()> GetPageState;
  Operation<int32_t()> GetFileFacts;
  Operation<int32_t()> GlyphrunLastError;
  Operation<const char16_t*()> GlyphrunLastErrorText;
  Operation<int32_t()> GetOutlineCount;
  Operation<int32_t(int32_t, GlyphrunOutlineEntry*)> GetOutlineEntry;
  Operation<GlyphrunView*(const char16_t*, const char16_t*, int32_t*)> OpenView;
  Operation<void(GlyphrunView*)> CloseView;
  Operation<void(GlyphrunView*)> AbortView;
  Operation<int32_t(const GlyphrunView*)> GetViewPageCount;
  Operation<int32_t(GlyphrunView*, int32_t, double*, double*)> GetViewPageSize;
  Operation<int32_t(GlyphrunView*, int32_t, double, GlyphrunImage*)> RenderViewPage;
  Operation<void(GlyphrunImage*)> ReleaseImage;
  Operation<void(GlyphrunView*, double)> SetViewWordSpacing;
  Operation<int32_t(GlyphrunView*, int32_t, const GlyphrunWord**)> GetViewWords;

  /// Text of the last failure.
  QString lastErrorText() const;
};

/// The words of the text library's open file.
class TextLibraryWords : public WordSource {
public:
  explicit TextLibraryWords(CPDFTextDumpInit& library) : m_library(library) {}

  void filePages(int first, int last) override;
  int numWords() override;
  void doReverseSort() override;
  PageWord word(int index) override;

private:
  CPDFTextDumpInit& m_library;
};

} // namespace folivex
