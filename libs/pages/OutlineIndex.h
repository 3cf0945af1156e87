// OutlineIndex: the bookmarks of a document.
#pragma once

#include "NamedDestinations.h"

#include <cstdint>
#include <vector>

namespace pages {

/// The bookmarks of a document in the order in which a reader lists them, each with its page.
class OutlineIndex {
public:
  static constexpr int32_t none = -1;

  struct Item {
    QPDFObjectHandle dictionary;
    int32_t parent; ///< position of the item above, or none
    int32_t page;   ///< page index from 0, or none
  };

  OutlineIndex(QPDFObjectHandle catalog, const NamedDestinations& names);

  const Item& item(int32_t position) const { return m_items[static_cast<size_t>(position)]; }

  /// Positions of all bookmarks.
  std::vector<int32_t> all() const;

  /// Positions, ascending, of the bookmarks into the ranges and of those above them.
  std::vector<int32_t> within(const std::vector<PageRange>& ranges) const;

private:
  void walk(QPDFObjectHandle root, const NamedDestinations& names);

  std::vector<Item> m_items;
  std::vector<int32_t> m_byPage; ///< positions of items that have a page, ordered by it
};

/// A bookmark among those that are written somewhere; relations are places among them, or none.
struct Bookmark {
  static constexpr int none = -1;

  const OutlineIndex::Item* item = nullptr; ///< null for the outline itself
  int parent = none;
  int previous = none;
  int next = none;
  int first = none;
  int last = none;
  int visibleBelow = 0; ///< bookmarks that show below it when it is open

  bool isOpen() const;
  /// What its entry /Count says; 0: it has none.
  int count() const { return isOpen() ? visibleBelow : -visibleBelow; }
};

/// The outline itself and behind it the bookmarks at these positions, which are in order and hold
/// those above them, all related to each other.
std::vector<Bookmark> bookmarksAt(const OutlineIndex& index, const std::vector<int32_t>& positions);

} // namespace pages
