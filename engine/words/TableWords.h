// TableWords: the words of a table, as a run reads those of an open file.
#pragma once

#include "engine/words/SourceWords.h"
#include "engine/words/WordTable.h"

namespace folivex {

/// filePages() waits until the page is in the table; a page that does not come, or is not wanted
/// any more, has no words.
class TableWords : public SourceWords {
public:
  /// `rotated` as in the setup: h and v of what is looked up by position are exchanged. `tell` gets
  /// what hinders such a look-up, once.
  TableWords(const WordTable& table, bool rotated, WordTable::IsWanted isWanted,
             std::function<void(const QString&)> tell)
      : m_table(table), m_rotated(rotated), m_isWanted(std::move(isWanted)),
        m_tell(std::move(tell)) {}

  /// One page at a time.
  void filePages(int first, int last) override;
  int numWords() override { return m_count; }
  void doReverseSort() override {}
  PageWord word(int index) override { return m_table.word(m_page, index); }
  PageState pageState() override {
    return m_page > 0 ? m_table.pageState(m_page) : PageState::Empty;
  }
  std::vector<Bookmark> outline() override { return m_table.outline(); }
  QString wordAt(int pageIndex, IntRange h, IntRange v) override;

private:
  const WordTable& m_table;
  bool m_rotated;
  WordTable::IsWanted m_isWanted;
  std::function<void(const QString&)> m_tell; ///< empty once it was called
  int m_page = 0;                             ///< 0 for none
  int m_count = 0;
};

} // namespace folivex
