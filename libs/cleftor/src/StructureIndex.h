#pragma once

#include "Fragment.h"
#include "pages/ObjGenHash.h"
#include "pages/PageTable.h"

#include <qpdf/InputSource.hh>
#include <qpdf/QPDF.hh>

#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace cleftor {

/// The tree of structure of a tagged document (PDF 32000-1 section 14.7), by page: the elements of
/// some pages are found without a look at the others. It is of numbers and texts alone, since an
/// element takes a kilobyte as a parsed object, and a page may have hundreds.
class StructureIndex {
public:
  static constexpr uint32_t none = std::numeric_limits<uint32_t>::max();

  /// Elements count from 0 in the order of the tree: each comes before those below it.
  struct Element {
    uint32_t parent;     ///< none: the root
    uint32_t rank;       ///< from 0, in /K of the parent
    uint32_t kids;       ///< items in its own /K, of use or not
    uint32_t entries;    ///< text of what it is
    uint32_t attributes; ///< text of what it looks like and how it is made
    uint32_t said;       ///< text of what is said of it, or in its place
  };

  /// Something on a page that an element holds.
  struct Item {
    uint32_t element;
    uint32_t rank;   ///< from 0, in /K of the element; none: the element has nothing on any page
    int32_t mark;    ///< identifier of marked content; none: an object
    uint32_t object; ///< the annotation or the like, or the stream that the marked content is in;
                     ///< none: it is in the content of the page
    static constexpr int32_t none = -1;
  };

  /// Walks the tree. The document is used up: its elements leave the memory. `input`: what it was
  /// read from; `pages` is of the same file.
  StructureIndex(QPDF& document, std::shared_ptr<InputSource> input, const pages::PageTable& pages);

  /// False when the tree is not what it should be, so that a part of it could be anything.
  bool isSound() const { return m_isSound; }

  const Element& element(uint32_t element) const { return m_elements[element]; }
  const Fragment& text(uint32_t text) const { return m_texts[text]; }
  QPDFObjGen object(uint32_t object) const { return m_objects[object]; }

  /// The identifier of an element, or nullptr.
  const std::string* name(uint32_t element) const;

  /// What stands on a page (from 0). An element that has nothing on any page, as the empty cell of
  /// a table, is on the page of its neighbour.
  std::span<const Item> onPage(int32_t page) const;

private:
  struct Found {
    int32_t page;
    Item item;
  };
  struct Step;
  class Walk;

  void sort(const std::vector<Found>& found, int32_t pageCount);

  bool m_isSound = true;
  std::vector<Element> m_elements;
  std::vector<Fragment> m_texts; ///< each once
  std::vector<QPDFObjGen> m_objects;
  std::vector<std::pair<uint32_t, std::string>> m_names; ///< ordered by element
  std::vector<Item> m_items;                             ///< ordered by page
  std::vector<size_t> m_firstItem;                       ///< by page, and one behind the last
};

} // namespace cleftor
