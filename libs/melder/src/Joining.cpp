#include "Joining.h"

#include "common/Failure.h"
#include "melder/melder.h"

#include <algorithm>
#include <set>

namespace melder {

namespace {

/// All before any is copied: links lead backward and forward.
std::vector<QPDFObjectHandle> placePages(Joining& joining) {
  std::vector<QPDFObjectHandle> newPages;
  for (int32_t page = 0; page < joining.part.pageCount(); ++page) {
    newPages.push_back(joining.newObject());
    const QPDFObjGen object = joining.part.pages().object(page);
    if (!joining.transplant.isPlaced(object)) {
      joining.transplant.place(object, newPages.back());
    }
  }
  return newPages;
}

/// Hangs the pages into the tree and returns the node that they are below: one of their own, so
/// that the root's list grows by one a part. A root that its kids inherit from goes below a new
/// one, since the pages of the part do not.
QPDFObjectHandle hangPages(Joining& joining, const std::vector<QPDFObjectHandle>& newPages) {
  QPDFObjectHandle catalog = joining.receiver.catalog();
  QPDFObjectHandle root = catalog.getKey("/Pages");
  if (!root.isIndirect()) {
    root = joining.receiver.pdf().makeIndirectObject(root);
    catalog.replaceKey("/Pages", root);
  }
  static const std::set<std::string> plain = {"/Type", "/Kids", "/Count", "/Parent"};
  const auto keys = root.getKeys();
  QPDFObjectHandle top = root;
  if (!std::ranges::includes(plain, keys) || !root.getKey("/Kids").isArray()) {
    top = joining.newObject();
    top.replaceKey("/Type", QPDFObjectHandle::newName("/Pages"));
    top.replaceKey("/Kids", QPDFObjectHandle::newArray({root}));
    root.replaceKey("/Parent", top);
    catalog.replaceKey("/Pages", top);
  }
  const int32_t all = joining.receiver.pageCount() + joining.part.pageCount();
  top.replaceKey("/Count", QPDFObjectHandle::newInteger(all));
  if (newPages.size() == 1) {
    top.getKey("/Kids").appendItem(newPages.front());
    return top;
  }
  QPDFObjectHandle node = joining.newObject();
  node.replaceKey("/Type", QPDFObjectHandle::newName("/Pages"));
  node.replaceKey("/Parent", top);
  node.replaceKey("/Count", QPDFObjectHandle::newInteger(joining.part.pageCount()));
  node.replaceKey("/Kids", QPDFObjectHandle::newArray(newPages));
  top.getKey("/Kids").appendItem(node);
  return node;
}

void writePages(Joining& joining, const std::vector<QPDFObjectHandle>& newPages) {
  const QPDFObjectHandle node = hangPages(joining, newPages);
  for (int32_t index = 0; index < joining.part.pageCount(); ++index) {
    QPDFObjectHandle page = joining.part.page(index).unsafeShallowCopy();
    for (const char* key : {"/Resources", "/MediaBox", "/CropBox", "/Rotate"}) {
      if (!page.hasKey(key)) {
        page.replaceKey(key, joining.part.inherited(index, key));
      }
    }
    // Article threads are not carried over, and a bead without its thread is a loose end.
    page.removeKey("/Parent");
    page.removeKey("/B");
    QPDFObjectHandle copy = joining.transplant.entries(page.getDictAsMap());
    copy.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
    copy.replaceKey("/Parent", node);
    joining.receiver.pdf().replaceObject(newPages[static_cast<size_t>(index)].getObjGen(), copy);
    // Page by page, so that what a page is made of lies together.
    joining.transplant.copyWaiting();
  }
}

} // namespace

void join(Document& receiver, Document& part, Transplant& transplant) {
  if (part.pageCount() == 0) {
    throw common::Failure(MELDER_DAMAGED, part.path() + ": the file has no pages");
  }
  Joining joining{receiver, part, transplant};
  const std::vector<QPDFObjectHandle> newPages = placePages(joining);
  joinLayers(joining);
  placeKnownResources(joining);
  joinDestinations(joining);
  joinFields(joining);
  writePages(joining, newPages);
  joinOutline(joining);
  joinLabels(joining);
  joinClaims(joining);
  transplant.copyWaiting();
  if (part.isRebuilt() && transplant.dangling() > 0) {
    throw common::Failure(MELDER_DAMAGED,
                          part.path() + ": damaged: parts of its pages are missing");
  }
}

} // namespace melder
