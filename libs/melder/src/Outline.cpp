#include "Joining.h"

#include "pages/OutlineIndex.h"

#include <algorithm>

namespace melder {

namespace {

using pages::Bookmark;

/// items: the outline and then the bookmarks, as `bookmark` counts them.
void fill(QPDFObjectHandle item, const Bookmark& bookmark,
          const std::vector<QPDFObjectHandle>& items, Transplant& transplant) {
  Transplant::Entries kept;
  for (const char* key : {"/Title", "/Dest", "/A", "/C", "/F"}) {
    kept[key] = QPDFObjectHandle(bookmark.item->dictionary).getKey(key);
  }
  for (const auto& [key, value] : transplant.entries(kept).getDictAsMap()) {
    item.replaceKey(key, value);
  }
  const std::pair<const char*, int> relations[] = {{"/Parent", bookmark.parent},
                                                   {"/Prev", bookmark.previous},
                                                   {"/Next", bookmark.next},
                                                   {"/First", bookmark.first},
                                                   {"/Last", bookmark.last}};
  for (const auto& [key, place] : relations) {
    if (place != Bookmark::none) {
      item.replaceKey(key, items[static_cast<size_t>(place)]);
    }
  }
  if (const int count = bookmark.count(); count != 0) {
    item.replaceKey("/Count", QPDFObjectHandle::newInteger(count));
  }
}

/// The last bookmark at the top, null when there is none, and how many show.
std::pair<QPDFObjectHandle, long long> endOf(QPDFObjectHandle outline) {
  pages::ObjGenSet seen;
  QPDFObjectHandle last = QPDFObjectHandle::newNull();
  long long visible = 0;
  for (QPDFObjectHandle item = outline.getKey("/First");
       item.isIndirect() && item.isDictionary() && seen.insert(item.getObjGen()).second;
       item = item.getKey("/Next")) {
    QPDFObjectHandle below = item.getKey("/Count");
    visible += 1 + (below.isInteger() ? std::max(below.getIntValue(), 0LL) : 0);
    last = item;
  }
  return {last, visible};
}

} // namespace

void joinOutline(Joining& joining) {
  const pages::OutlineIndex index(joining.part.catalog(), joining.names);
  const std::vector<Bookmark> bookmarks = pages::bookmarksAt(index, index.all());
  const Bookmark& root = bookmarks.front();
  if (root.first == Bookmark::none) {
    return;
  }
  QPDFObjectHandle outline = dictionaryBelow(joining.receiver.catalog(), "/Outlines");
  if (!outline.isIndirect()) {
    outline = joining.receiver.pdf().makeIndirectObject(outline);
    joining.receiver.catalog().replaceKey("/Outlines", outline);
  }
  std::vector<QPDFObjectHandle> items{outline};
  while (items.size() < bookmarks.size()) {
    items.push_back(joining.newObject());
  }
  for (size_t i = 1; i < items.size(); ++i) {
    fill(items[i], bookmarks[i], items, joining.transplant);
  }
  QPDFObjectHandle& first = items[static_cast<size_t>(root.first)];
  auto [last, visible] = endOf(outline);
  if (last.isDictionary()) {
    last.replaceKey("/Next", first);
    first.replaceKey("/Prev", last);
  } else {
    outline.replaceKey("/First", first);
  }
  outline.replaceKey("/Last", items[static_cast<size_t>(root.last)]);
  outline.replaceKey("/Count", QPDFObjectHandle::newInteger(visible + root.visibleBelow));
}

} // namespace melder
