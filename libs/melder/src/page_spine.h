#ifndef MELDER_PAGE_SPINE_H
#define MELDER_PAGE_SPINE_H

#include "dict_text.h"

#include <qpdf/QPDF.hh>

#include <vector>

namespace melder {

class Update;

/**
 * The right edge of the page tree: the nodes that a page added at the end concerns. Nodes take a
 * fixed number of kids and new ones open to the right of full ones, so that an append rewrites a
 * number of small nodes that grows with the logarithm of the page count. A tree made by someone
 * else becomes the first kid of a new root when its own edge cannot take pages safely.
 */
class PageSpine {
public:
  /** `root` is the /Pages object of the file, `count` its number of pages. */
  void read(const QPDFObjectHandle& root, int count);

  /** Takes a page in at the end; returns the node that is its /Parent. */
  [[nodiscard]] QPDFObjGen append(QPDFObjGen page, Update& update);
  /** Writes what `append` has left open. */
  void write(Update& update);

  [[nodiscard]] QPDFObjGen root() const { return m_nodes.front().id; }
  [[nodiscard]] int count() const { return m_nodes.front().count; }

private:
  struct Node {
    QPDFObjGen id;
    std::vector<QPDFObjGen> kids;
    int count = 0;
  };
  [[nodiscard]] bool readEdge(const QPDFObjectHandle& root);
  void writeNode(size_t level, Update& update);
  void addRoot(Update& update);

  /** Root first; the last one holds pages. */
  std::vector<Node> m_nodes;
  /** A foreign root that has to be hung below one of ours; empty once that is done. */
  DictText m_foreign;
};

} // namespace melder

#endif
