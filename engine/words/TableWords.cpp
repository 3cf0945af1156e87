#include "engine/words/TableWords.h"

namespace folivex {

void TableWords::filePages(int first, int /*last*/) {
  const bool isThere = m_table.waitForPage(first, m_isWanted);
  m_page = isThere ? first : 0;
  m_count = isThere ? m_table.wordCount(first) : 0;
}

QString TableWords::wordAt(int pageIndex, IntRange h, IntRange v) {
  const int page = pageIndex + 1;
  if (!m_table.waitForPage(page, m_isWanted)) {
    return {};
  }
  const int count = m_table.wordCount(page);
  if (count > mostWordsOfLookup) {
    if (const auto tell = std::exchange(m_tell, nullptr)) {
      tell(tooManyWordsText());
    }
    return {};
  }
  if (m_rotated) {
    std::swap(h, v);
  }
  for (int i = 0; i < count; ++i) {
    const PageWord word = m_table.word(page, i);
    if (h.contains(word.h) && v.contains(word.v)) {
      return word.text.toString();
    }
  }
  return {};
}

} // namespace folivex
