#include "engine/words/ViewWordLookup.h"

#include "engine/base/Utf16.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "engine/words/PageWord.h"

#include <span>
#include <utility>

namespace folivex {

ViewWordLookup::ViewWordLookup(CPDFTextDumpInit& library, Source source,
                               std::function<void(const QString&)> tell)
    : m_library(library), m_source(std::move(source)), m_tell(std::move(tell)) {}

ViewWordLookup::~ViewWordLookup() {
  if (m_view) {
    m_library.CloseView(m_view);
  }
}

QString ViewWordLookup::wordAt(int pageIndex, IntRange h, IntRange v) {
  if (!m_opened) {
    m_opened = true;
    m_view = m_library.openView(m_source.file, m_source.password);
    if (m_view) {
      m_library.SetViewWordSpacing(m_view, m_source.wordSpacing);
    }
  }
  if (!m_view) {
    return {};
  }
  const GlyphrunWord* words = nullptr;
  const int count = m_library.GetViewWords(m_view, pageIndex + 1, &words);
  if (count > mostWordsOfLookup) {
    tellOnce(tooManyWordsText());
    return {};
  }
  for (const GlyphrunWord& word :
       std::span(words, count > 0 ? static_cast<std::size_t>(count) : 0)) {
    const int wordH = m_source.rotated ? word.v : word.h;
    const int wordV = m_source.rotated ? word.h : word.v;
    if (h.contains(wordH) && v.contains(wordV)) {
      return wordText(word.text).toString();
    }
  }
  return {};
}

void ViewWordLookup::tellOnce(const QString& text) {
  if (!std::exchange(m_told, true)) {
    m_tell(text);
  }
}

} // namespace folivex
