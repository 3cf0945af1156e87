#ifndef CLEFTOR_PAGE_LABELS_H
#define CLEFTOR_PAGE_LABELS_H

#include "Fragment.h"

#include <qpdf/QPDFObjectHandle.hh>

#include <cstdint>
#include <optional>
#include <vector>

namespace cleftor {

/** The page labels of a document: numbering sections, each from a page on. */
class PageLabels {
public:
  explicit PageLabels(QPDFObjectHandle catalog);

  /** The number tree that gives pages first..last (indexes) the labels they have, when they have
   * any. */
  std::optional<Fragment> within(int32_t first, int32_t last) const;

private:
  struct Section {
    int64_t page;
    QPDFObjectHandle label;
  };

  std::vector<Section> m_sections;
};

} // namespace cleftor

#endif
