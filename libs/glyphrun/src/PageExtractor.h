// The state that the operations without a handle share: the open file and the words last extracted.
#pragma once

#include "Outline.h"
#include "PageReader.h"
#include "ReadAhead.h"

#include <memory>
#include <string>
#include <vector>

namespace glyphrun {

/// Words of pages by number, in the order asked for; one word at a time is selected.
class PageExtractor {
public:
  static PageExtractor& instance();

  // These three throw common::Failure.

  std::int32_t countPages(const std::u16string& path, const std::u16string& password);
  void openFile(const std::u16string& path, const std::u16string& password);
  /// Pages from 1, inclusive. When one of them is damaged, its words are there all the same.
  void extract(std::int32_t first, std::int32_t last);
  void closeFile();

  std::int32_t pageCount() const { return m_reader ? m_reader->file().pageCount() : 0; }
  /// How the last count, opening or extraction went: noted by who called it.
  std::int32_t status() const { return m_status; }
  void setStatus(std::int32_t code) { m_status = code; }
  std::int32_t lastPage() const { return m_lastPage; }
  std::int32_t pageState() const { return static_cast<std::int32_t>(m_pageState); }
  std::int32_t facts() const { return m_reader ? m_reader->file().facts() : 0; }
  void setWordSpacing(double factor);
  void setReadAhead(std::int32_t threads);

  std::int32_t wordCount() const { return static_cast<std::int32_t>(m_order.size()); }
  void sortAsDrawn();
  void sortForReading();
  void removeRepeats();
  void select(std::int32_t index);
  /// The selected word; an empty one at 0,0 without a selection.
  const Word& selected() const;
  const char16_t* selectedText() const;
  const char16_t* selectedFont() const;

  const std::vector<OutlineEntry>& outline();

private:
  struct WordIndex {
    std::uint32_t slot;
    std::uint32_t word;
  };

  void startReadAhead(std::int32_t first);
  void readPage(std::int32_t index, PageWords& words);
  void dropWords();
  void fillOrder(bool reading);

  std::unique_ptr<PageReader> m_reader;
  std::unique_ptr<ReadAhead> m_ahead; ///< of a short file from the second of two pages in a row on
  std::int32_t m_aheadThreads = 0;
  std::u16string m_path;
  std::u16string m_password;
  // The file that a count left ready for the opening that follows.
  std::unique_ptr<PageReader> m_ready;
  std::u16string m_readyPath;
  std::u16string m_readyPassword;
  std::optional<common::FileIdentity> m_readyIdentity;

  std::int32_t m_status = 0;
  PageState m_pageState = PageState::Empty;
  std::int32_t m_lastPage = 0;
  double m_wordSpacing = 0;
  std::vector<PageWords> m_pages; ///< the first `m_pagesUsed` count; the others are storage
  std::size_t m_pagesUsed = 0;
  std::vector<WordIndex> m_order;
  WordIndex m_selected{};
  bool m_hasSelection = false;
  bool m_outlineRead = false;
  std::vector<OutlineEntry> m_outline;
};

} // namespace glyphrun
