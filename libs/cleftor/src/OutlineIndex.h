#ifndef CLEFTOR_OUTLINE_INDEX_H
#define CLEFTOR_OUTLINE_INDEX_H

#include "NamedDestinations.h"

#include <cstdint>
#include <vector>

namespace cleftor {

/** The bookmarks of a document in the order in which a reader lists them, each with its page. */
class OutlineIndex {
public:
  static constexpr int32_t none = -1;

  struct Item {
    QPDFObjectHandle dictionary;
    int32_t parent; /**< position of the item above, or none */
    int32_t page;   /**< page index from 0, or none */
  };

  OutlineIndex(QPDFObjectHandle catalog, const NamedDestinations& names);

  const Item& item(int32_t position) const { return m_items[static_cast<size_t>(position)]; }

  /** Positions, ascending, of the bookmarks into the ranges and of those above them. */
  std::vector<int32_t> within(const std::vector<PageRange>& ranges) const;

private:
  void walk(QPDFObjectHandle root, const NamedDestinations& names);

  std::vector<Item> m_items;
  std::vector<int32_t> m_byPage; /**< positions of items that have a page, ordered by it */
};

} // namespace cleftor

#endif
