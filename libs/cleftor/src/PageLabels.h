#ifndef CLEFTOR_PAGE_LABELS_H
#define CLEFTOR_PAGE_LABELS_H

#include "Fragment.h"
#include "PageTable.h"

#include <qpdf/QPDFObjectHandle.hh>

#include <cstdint>
#include <optional>
#include <vector>

namespace cleftor {

/** The page labels of a document: numbering sections, each from a page on. */
class PageLabels {
public:
  explicit PageLabels(QPDFObjectHandle catalog);

  /** The number tree that gives the pages of the ranges, one after the other, the labels they have,
   * when they have any. */
  std::optional<Fragment> within(const std::vector<PageRange>& ranges) const;

private:
  bool writeRange(Fragment& out, PageRange range, int64_t place) const;

  struct Section {
    int64_t page;
    QPDFObjectHandle label;
  };

  std::vector<Section> m_sections;
};

} // namespace cleftor

#endif
