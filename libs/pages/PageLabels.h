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
    QPDFObjectHandle label; ///< the dictionary that describes the whole section
    int64_t skipped = 0;    ///< so many of its pages are not there: it begins that much later

    /// Number of its first page.
    int64_t start() const;
    /// The dictionary that describes what is there of the section.
    QPDFObjectHandle shifted() const;
  };

  explicit PageLabels(QPDFObjectHandle catalog);

  /// In the order of their pages, as the document states them.
  const std::vector<Section>& sections() const { return m_sections; }

  /// Sections that give the pages of the ranges, one after the other, the labels they have; none
  /// when no page has any.
  std::vector<Section> within(const std::vector<PageRange>& ranges) const;

private:
  bool addRange(std::vector<Section>& found, PageRange range, int64_t place) const;

  std::vector<Section> m_sections;
};

} // namespace pages
