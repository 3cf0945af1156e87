// PageAddressReader: the address search, as a run asks for it page by page.
#pragma once

#include "engine/output/PageAddresses.h"
#include "mail/AddressSearch.h"

#include <memory>

namespace folivex {

class PageAddressReader : public AddressReader {
public:
  explicit PageAddressReader(AddressRules rules) : m_search(std::move(rules)) {}

  Found read(WordSource& words) override;

private:
  AddressSearch m_search;
};

/// With the windows and texts of this setup.
std::unique_ptr<AddressReader> addressReaderFor(const SplitSetup& setup);

} // namespace folivex
