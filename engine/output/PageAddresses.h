// PageAddresses: the e-mail addresses that the pages of a source hold.
#pragma once

#include "engine/words/WordSource.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace folivex {

/// Finds the addresses among the words of one page. What makes an address, and where it may stand,
/// is the implementation's.
class AddressReader {
public:
  struct Found {
    QString address; ///< the one that mail goes to; empty when the page has none
    QStringList further;
  };

  virtual ~AddressReader() = default;

  /// `words` holds the page, in reading order.
  virtual Found read(WordSource& words) = 0;
};

struct SplitSetup;
/// Makes what finds the addresses that outputs are mailed to.
using AddressReaderMaker = std::function<std::unique_ptr<AddressReader>(const SplitSetup&)>;

/// Collects them page by page, and tells those of a range. Pages count from 1.
class PageAddresses {
public:
  using Tell = std::function<void(const QString& problem)>;
  /// A page with more words is no page of a document, and is not looked at.
  static constexpr int maxWordsOfPage = 32768;

  /// `reader` may be null: then no page has an address. It must outlive this. `tell` is called at
  /// most once, when a page has too many words; it may be empty.
  explicit PageAddresses(AddressReader* reader, Tell tell = {})
      : m_reader(reader), m_tell(std::move(tell)) {}

  bool isWanted() const { return m_reader != nullptr; }

  /// Reads a page; pages come in ascending order.
  void readPage(int page, WordSource& words);

  /// Of the pages first..last (inclusive): the address of the first page that has one, and all the
  /// others, each once.
  AddressReader::Found of(int first, int last) const;

private:
  struct Page {
    int page;
    AddressReader::Found found;
  };

  void tellTooManyWords();

  AddressReader* m_reader;
  Tell m_tell;               ///< empty once it was called
  std::vector<Page> m_pages; ///< those that have an address
};

/// Adds to `all` what is not in it yet, at most a few dozen: they are for a person to see.
void addFurther(AddressReader::Found& all, const AddressReader::Found& more);

} // namespace folivex
