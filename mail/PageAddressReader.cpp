#include "mail/PageAddressReader.h"

namespace folivex {

AddressReader::Found PageAddressReader::read(WordSource& words) {
  m_search.startPage();
  const int count = words.numWords();
  for (int i = 0; i < count; ++i) {
    m_search.add(words.word(i));
  }
  return m_search.find();
}

std::unique_ptr<AddressReader> addressReaderFor(const SplitSetup& setup) {
  return std::make_unique<PageAddressReader>(AddressRules::of(setup));
}

} // namespace folivex
