// PageTable: the pages of a document.
#pragma once

#include "ObjGenHash.h"

#include <qpdf/InputSource.hh>
#include <qpdf/QPDF.hh>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pages {

/// Some pages in a row, both included; indexes from 0 unless it says otherwise.
struct PageRange {
  int32_t first;
  int32_t last;
};

/// The pages of a document, each seen before it counts: no number that the file states is believed.
/// Page indexes here count from 0. Once made it refers to no document, and is good for every one
/// of the same file in which no objects had to be made.
class PageTable {
public:
  /// Walks the page tree once. A node that is met again is not walked again. `input`: see
  /// TreeReader.
  explicit PageTable(QPDF& document, std::shared_ptr<InputSource> input = nullptr);

  int32_t count() const { return static_cast<int32_t>(m_pages.size()); }

  QPDFObjGen object(int32_t page) const { return m_pages[static_cast<size_t>(page)].object; }

  /// Index of the page that the object is (the first, when the tree lists it twice).
  std::optional<int32_t> indexOf(QPDFObjGen object) const;

  /// Whether the object is an inner node of the page tree.
  bool isNode(QPDFObjGen object) const { return m_nodeIndex.count(object) != 0; }

  /// Whether pages or nodes had to be made objects of their own: the document in memory is not the
  /// file.
  bool madeObjects() const { return m_madeObjects; }

  /// Value of an entry of the nodes above the page, null when none of them has it.
  QPDFObjectHandle inherited(QPDF& document, int32_t page, const std::string& key) const;

  /// Whether more than one page names this object as its resources.
  bool isSharedResource(QPDFObjGen object) const { return m_sharedResources.count(object) != 0; }

private:
  struct Page {
    QPDFObjGen object;
    uint32_t node;
  };
  struct Node {
    QPDFObjGen object;
    uint32_t parent;
  };
  class Walk;

  bool m_madeObjects = false;
  std::vector<Page> m_pages;
  std::vector<int32_t> m_byObject; ///< indexes of pages, ordered by object and index
  std::vector<Node> m_nodes;
  ObjGenSet m_nodeIndex;
  ObjGenSet m_sharedResources;
};

} // namespace pages
