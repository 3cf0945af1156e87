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

  std::int32_t pageCount() const { return reader_ ? reader_->file().pageCount() : 0; }
  std::int32_t status() const { return static_cast<std::int32_t>(status_); }
  std::int32_t lastPage() const { return lastPage_; }
  std::int32_t pageState() const { return static_cast<std::int32_t>(pageState_); }
  std::int32_t facts() const { return reader_ ? reader_->file().facts() : 0; }
  void setWordSpacing(double factor);
  void setReadAhead(std::int32_t threads);

  std::int32_t wordCount() const { return static_cast<std::int32_t>(order_.size()); }
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
  void readPage(std::int32_t index, PageWords& words);
  void dropWords();
  void fillOrder(bool reading);

  std::unique_ptr<PageReader> reader_;
  std::unique_ptr<ReadAhead> ahead_; /**< from the second of two pages in a row on */
  std::int32_t aheadThreads_ = 0;
  std::u16string path_;
  std::u16string password_;
  // The file that a count left ready for the opening that follows.
  std::unique_ptr<PageReader> ready_;
  std::u16string readyPath_;
  std::u16string readyPassword_;
  FileIdentity readyIdentity_;

  Result status_ = Result::Ok;
  PageState pageState_ = PageState::Empty;
  std::int32_t lastPage_ = 0;
  double wordSpacing_ = 0;
  std::vector<PageWords> pages_; /**< the first `pagesUsed_` count; the others are storage */
  std::size_t pagesUsed_ = 0;
  std::vector<WordIndex> order_;
  WordIndex selected_{};
  bool hasSelection_ = false;
  bool outlineRead_ = false;
  std::vector<OutlineEntry> outline_;
};

} // namespace glyphrun
