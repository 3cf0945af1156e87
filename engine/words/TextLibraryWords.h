// TextLibraryWords: the words of the file that is open in the text library.
#pragma once

#include "engine/words/SourceWords.h"
#include "engine/words/ViewWordLookup.h"

namespace folivex {

/// Reads through the library's page-by-page operations, which belong to one thread; words by their
/// position through a view beside them.
class TextLibraryWords : public SourceWords {
public:
  /// `source` is the open file; `tell` gets what hinders a look-up, once.
  TextLibraryWords(CPDFTextDumpInit& library, const ViewWordLookup::Source& source,
                   std::function<void(const QString&)> tell)
      : m_library(library), m_lookup(library, source, std::move(tell)) {}

  void filePages(int first, int last) override;
  int numWords() override;
  void doReverseSort() override;
  PageWord word(int index) override;
  PageState pageState() override;
  std::vector<Bookmark> outline() override;
  QString wordAt(int pageIndex, IntRange h, IntRange v) override {
    return m_lookup.wordAt(pageIndex, h, v);
  }

private:
  CPDFTextDumpInit& m_library;
  ViewWordLookup m_lookup;
};

/// The library's GLYPHRUN_PAGE_... as the engine names it.
PageState pageStateOf(int libraryState);

} // namespace folivex
