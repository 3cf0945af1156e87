// The state that the operations without a handle share: the open file and the words last extracted.
#pragma once

#include "Outline.h"
#include "PageReader.h"
#include "ReadAhead.h"

#include <memory>
#include <string>
#include <vector>

namespace glyphrun {

class Session {
public:
  static Session& instance();

  std::int32_t countPages(const std::u16string& path, const std::u16string& password);
  void openFile(const std::u16string& path, const std::u16string& password);
  void closeFile();
  void extract(std::int32_t first, std::int32_t last);

  std::int32_t pageCount() const { return m_reader ? m_reader->file().pageCount() : 0; }
  std::int32_t status() const { return static_cast<std::int32_t>(m_status); }
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
  /** The selected word; an empty one at 0,0 without a selection. */
  const Word& selected() const;
  const char16_t* selectedText() const;
  const char16_t* selectedFont() const;

  const std::vector<OutlineEntry>& outline();

private:
  struct WordIndex {
    std::uint32_t slot;
    std::uint32_t word;
  };

  std::unique_ptr<PageReader> openReader(const std::u16string& path, const std::u16string& password,
                                         FileIdentity& identity);
  void startReadAhead(std::int32_t first, PageList pages);
  void readPage(std::int32_t index, PageWords& words);
  void dropWords();
  void fillOrder(bool reading);

  std::unique_ptr<PageReader> m_reader;
  std::unique_ptr<ReadAhead>
      m_ahead; /**< of a short file from the second of two pages in a row on */
  std::int32_t m_aheadThreads = 0;
  std::u16string m_path;
  std::u16string m_password;
  // The file that a count left ready for the opening that follows.
  std::unique_ptr<PageReader> m_ready;
  std::u16string m_readyPath;
  std::u16string m_readyPassword;
  FileIdentity m_readyIdentity;

  Result m_status = Result::Ok;
  PageState m_pageState = PageState::Empty;
  std::int32_t m_lastPage = 0;
  double m_wordSpacing = 0;
  std::vector<PageWords> m_pages; /**< the first `m_pagesUsed` count; the others are storage */
  std::size_t m_pagesUsed = 0;
  std::vector<WordIndex> m_order;
  WordIndex m_selected{};
  bool m_hasSelection = false;
  bool m_outlineRead = false;
  std::vector<OutlineEntry> m_outline;
};

} // namespace glyphrun
