#ifndef MELDER_LABELS_H
#define MELDER_LABELS_H

#include "document.h"
#include "sorted_tree.h"

namespace melder {

/**
 * Page labels. A part brings its own; one that has none is numbered by its pages' places in the
 * whole file, as it would be if nobody had labels.
 */
class Labels {
public:
  Labels() : m_tree(SortedTree::Keys::Numbers) {}
  void read(QPDF& pdf);
  /** `before`: number of pages in front of the part. */
  void append(Document& part, int before, Update& update, Catalog& catalog);

private:
  /** A run of labels: how it looks, and the number its first page has. */
  struct Run {
    std::string style; ///< the dictionary without /St
    long long start = 1;
  };
  static Run runOf(QPDFObjectHandle label);
  static std::string textOf(const Run& run);
  void add(int64_t page, const Run& run);

  SortedTree m_tree;
  int64_t m_lastPage = -1; ///< where the last run begins; -1: there are no labels
  Run m_last;
};

} // namespace melder

#endif
