// PageLabels: what the pages of a document are called.
#pragma once

#include "PageTable.h"

#include <qpdf/QPDFObjectHandle.hh>

#include <cstdint>
#include <vector>

namespace pages {

/// The page labels of a document: numbering sections, each from a page on.
class PageLabels {
public:
  struct Section {
    int64_t page;           ///< index of its first page
    QPDFObjectHandle label; ///< the dictionary that describes it
  };

  explicit PageLabels(QPDFObjectHandle catalog);

  /// Sections that give the pages of the ranges, one after the other from the index `place` on, the
  /// labels they have; none when no page has any. Pages without are numbered by their place.
  std::vector<Section> within(const std::vector<PageRange>& ranges, int64_t place = 0) const;

  /// A section that numbers the pages from the index `page` on by their place.
  static Section byPlace(int64_t page);

private:
  bool addRange(std::vector<Section>& found, PageRange range, int64_t place) const;

  std::vector<Section> m_sections; ///< in the order of their pages, as the document states them
};

} // namespace pages
