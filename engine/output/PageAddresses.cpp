#include "engine/output/PageAddresses.h"

#include "engine/words/PageWordLookup.h"

#include <algorithm>
#include <utility>

namespace folivex {

namespace {

constexpr qsizetype mostFurther = 50;

void addOne(AddressReader::Found& all, const QString& address) {
  if (all.address.isEmpty()) {
    all.address = address;
  } else if (address != all.address && all.further.size() < mostFurther &&
             !all.further.contains(address)) {
    all.further += address;
  }
}

} // namespace

void addFurther(AddressReader::Found& all, const AddressReader::Found& more) {
  if (!more.address.isEmpty()) {
    addOne(all, more.address);
  }
  for (const QString& address : more.further) {
    addOne(all, address);
  }
}

void PageAddresses::tellTooManyWords() {
  if (const Tell tell = std::exchange(m_tell, nullptr)) {
    tell(tooManyWordsText());
  }
}

void PageAddresses::readPage(int page, WordSource& words) {
  if (words.numWords() > maxWordsOfPage) {
    tellTooManyWords();
    return;
  }
  AddressReader::Found found = m_reader->read(words);
  if (!found.address.isEmpty()) {
    m_pages.push_back({page, std::move(found)});
  }
}

AddressReader::Found PageAddresses::of(int first, int last) const {
  AddressReader::Found all;
  auto page = std::lower_bound(m_pages.begin(), m_pages.end(), first,
                               [](const Page& entry, int wanted) { return entry.page < wanted; });
  for (; page != m_pages.end() && page->page <= last; ++page) {
    addFurther(all, page->found);
  }
  return all;
}

} // namespace folivex
