#include "Joining.h"

#include "Entries.h"
#include "Fields.h"
#include "Layers.h"
#include "SharedResources.h"
#include "common/Failure.h"
#include "melder/melder.h"
#include "pages/OutlineIndex.h"
#include "pages/PageLabels.h"
#include "pages/TreeWalk.h"

#include <algorithm>
#include <array>
#include <set>

namespace melder {

namespace {

/// Work on one append.
class Joiner {
public:
  Joiner(Document& receiver, Document& part, Transplant& transplant)
      : m_receiver(receiver), m_part(part), m_transplant(transplant),
        m_names(part.catalog(), part.pages()) {}

  void run() {
    placePages();
    joinLayers(m_receiver, m_part, m_transplant);
    SharedResources(m_receiver).placeKnown(m_part, m_transplant);
    joinDestinations();
    joinFields(m_receiver, m_part, m_transplant);
    writePages();
    joinOutline();
    joinLabels();
    m_transplant.copyWaiting();
  }

private:
  /// A name or number tree of keys and values in the order of the keys; a broken one is gone then.
  void setTree(QPDFObjectHandle owner, const char* key, const char* leaves,
               const std::vector<QPDFObjectHandle>& entries) {
    auto tree = QPDFObjectHandle::newDictionary();
    tree.replaceKey(leaves, QPDFObjectHandle::newArray(entries));
    owner.replaceKey(key, m_receiver.pdf().makeIndirectObject(tree));
  }

  QPDFObjectHandle newObject() {
    return m_receiver.pdf().makeIndirectObject(QPDFObjectHandle::newDictionary());
  }

  /// All before any is copied: links lead backward and forward.
  void placePages() {
    for (int32_t page = 0; page < m_part.pageCount(); ++page) {
      m_newPages.push_back(newObject());
      const QPDFObjGen object = m_part.pages().object(page);
      if (!m_transplant.isPlaced(object)) {
        m_transplant.place(object, m_newPages.back());
      }
    }
  }

  /// The node for the part's pages. A root that its kids inherit from goes below a new one, since
  /// the pages of the part do not.
  QPDFObjectHandle hangNode() {
    QPDFObjectHandle root = m_receiver.catalog().getKey("/Pages");
    if (!root.isIndirect()) {
      root = m_receiver.pdf().makeIndirectObject(root);
      m_receiver.catalog().replaceKey("/Pages", root);
    }
    static const std::set<std::string> plain = {"/Type", "/Kids", "/Count", "/Parent"};
    const auto keys = root.getKeys();
    QPDFObjectHandle top = root;
    if (!std::includes(plain.begin(), plain.end(), keys.begin(), keys.end()) ||
        !root.getKey("/Kids").isArray()) {
      top = newObject();
      top.replaceKey("/Type", QPDFObjectHandle::newName("/Pages"));
      top.replaceKey("/Kids", QPDFObjectHandle::newArray({root}));
      root.replaceKey("/Parent", top);
      m_receiver.catalog().replaceKey("/Pages", top);
    }
    QPDFObjectHandle node = newObject();
    node.replaceKey("/Type", QPDFObjectHandle::newName("/Pages"));
    node.replaceKey("/Parent", top);
    node.replaceKey("/Count", QPDFObjectHandle::newInteger(m_part.pageCount()));
    node.replaceKey("/Kids", QPDFObjectHandle::newArray(m_newPages));
    top.getKey("/Kids").appendItem(node);
    top.replaceKey("/Count",
                   QPDFObjectHandle::newInteger(m_receiver.pageCount() + m_part.pageCount()));
    return node;
  }

  void writePages() {
    QPDFObjectHandle node = hangNode();
    for (int32_t index = 0; index < m_part.pageCount(); ++index) {
      QPDFObjectHandle page = m_part.page(index).unsafeShallowCopy();
      for (const char* key : {"/Resources", "/MediaBox", "/CropBox", "/Rotate"}) {
        if (!page.hasKey(key)) {
          page.replaceKey(key, m_part.pages().inherited(index, key));
        }
      }
      // Article threads are not carried over, and a bead without its thread is a loose end.
      page.removeKey("/Parent");
      page.removeKey("/B");
      QPDFObjectHandle copy = m_transplant.entries(page.getDictAsMap());
      copy.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
      copy.replaceKey("/Parent", node);
      m_receiver.pdf().replaceObject(m_newPages[static_cast<size_t>(index)].getObjGen(), copy);
      // Page by page, so that what a page is made of lies together.
      m_transplant.copyWaiting();
    }
  }

  [[nodiscard]] std::string freeName(const std::string& wanted,
                                     const std::set<std::string>& taken) const {
    if (!taken.contains(wanted)) {
      return wanted;
    }
    // In front and padded: the renamed ones of one append lie side by side in the tree.
    std::string digits = std::to_string(m_receiver.pageCount() + 1);
    digits.insert(0, 7 - std::min<size_t>(digits.size(), 7), '0');
    std::string name = 'p' + digits + '.' + wanted;
    for (int again = 2; taken.contains(name); ++again) {
      name = 'p' + digits + '.' + std::to_string(again) + '.' + wanted;
    }
    return name;
  }

  void joinDestinations() {
    std::map<std::string, QPDFObjectHandle> all;
    std::set<std::string> taken;
    QPDFObjectHandle names = m_receiver.catalog().getKey("/Names");
    pages::walkTree(names.isDictionary() ? names.getKey("/Dests") : QPDFObjectHandle::newNull(),
                    "/Names", [&](QPDFObjectHandle key, const QPDFObjectHandle& value) {
                      if (key.isString() && all.emplace(key.getStringValue(), value).second) {
                        taken.insert(key.getStringValue());
                      }
                    });
    QPDFObjectHandle older = m_receiver.catalog().getKey("/Dests");
    if (older.isDictionary()) {
      for (const std::string& key : older.getKeys()) {
        taken.insert(key.substr(1));
      }
    }
    Transplant::Names renamed;
    std::vector<std::pair<std::string, QPDFObjectHandle>> added;
    for (const auto* each : m_names.within({{0, m_part.pageCount() - 1}})) {
      const std::string name = each->isNameObject ? each->name.substr(1) : each->name;
      if (!renamed.contains(name)) {
        const std::string fresh = freeName(name, taken);
        renamed[name] = fresh;
        taken.insert(fresh);
        added.emplace_back(fresh, explicitDestination(*each));
      }
    }
    m_transplant.setDestinations(renamed);
    if (added.empty()) {
      return;
    }
    for (const auto& [name, destination] : added) {
      all[name] = m_transplant.value(destination);
    }
    std::vector<QPDFObjectHandle> entries;
    for (const auto& [name, value] : all) {
      entries.push_back(QPDFObjectHandle::newString(name));
      entries.push_back(value);
    }
    setTree(dictionaryBelow(m_receiver.catalog(), "/Names"), "/Dests", "/Names", entries);
  }

  /// Some name the page by its index, which is another one in the receiving document.
  QPDFObjectHandle explicitDestination(const pages::NamedDestinations::Destination& destination) {
    QPDFObjectHandle array = QPDFObjectHandle(destination.value).unsafeShallowCopy();
    array.setArrayItem(0, m_part.page(destination.page));
    return array;
  }

  void joinOutline() {
    const pages::OutlineIndex index(m_part.catalog(), m_names);
    pages::Bookmark root;
    const std::vector<pages::Bookmark> bookmarks = pages::bookmarksAt(index, index.all(), root);
    if (bookmarks.empty()) {
      return;
    }
    std::vector<QPDFObjectHandle> items;
    for (size_t i = 0; i < bookmarks.size(); ++i) {
      items.push_back(newObject());
    }
    QPDFObjectHandle outline = dictionaryBelow(m_receiver.catalog(), "/Outlines");
    if (!outline.isIndirect()) {
      outline = m_receiver.pdf().makeIndirectObject(outline);
      m_receiver.catalog().replaceKey("/Outlines", outline);
    }
    for (size_t i = 0; i < bookmarks.size(); ++i) {
      fill(items[i], bookmarks[i], items, outline);
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

  void fill(QPDFObjectHandle item, const pages::Bookmark& bookmark,
            const std::vector<QPDFObjectHandle>& items, const QPDFObjectHandle& outline) {
    QPDFObjectHandle source = bookmark.item->dictionary;
    Transplant::Entries kept;
    for (const char* key : {"/Title", "/Dest", "/A", "/C", "/F"}) {
      kept[key] = source.getKey(key);
    }
    for (const auto& [key, value] : m_transplant.entries(kept).getDictAsMap()) {
      item.replaceKey(key, value);
    }
    const auto relate = [&](const char* key, int position) {
      if (position != pages::Bookmark::none) {
        item.replaceKey(key, items[static_cast<size_t>(position)]);
      }
    };
    item.replaceKey("/Parent", outline);
    relate("/Parent", bookmark.parent);
    relate("/Prev", bookmark.previous);
    relate("/Next", bookmark.next);
    relate("/First", bookmark.first);
    relate("/Last", bookmark.last);
    if (bookmark.visibleBelow > 0) {
      item.replaceKey("/Count",
                      QPDFObjectHandle::newInteger(bookmark.isOpen() ? bookmark.visibleBelow
                                                                     : -bookmark.visibleBelow));
    }
  }

  /// The last bookmark at the top, null when there is none, and how many show.
  static std::pair<QPDFObjectHandle, long long> endOf(QPDFObjectHandle outline) {
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

  /// Pages without labels are numbered by their place if others have labels.
  void joinLabels() {
    const pages::PageLabels receiverLabels(m_receiver.catalog());
    const auto partLabels =
        pages::PageLabels(m_part.catalog()).within({{0, m_part.pageCount() - 1}});
    std::vector<pages::PageLabels::Section> sections = receiverLabels.sections();
    const int32_t before = m_receiver.pageCount();
    std::erase_if(sections,
                  [&](const auto& section) { return section.page < 0 || section.page >= before; });
    if (sections.empty() && partLabels.empty()) {
      return;
    }
    const auto decimal = QPDFObjectHandle::parse("<</S/D>>");
    if ((sections.empty() || sections.front().page > 0) && before > 0) {
      sections.insert(sections.begin(), {0, decimal, 0});
    }
    if (partLabels.empty() || partLabels.front().page > 0) {
      sections.push_back({before, decimal, before});
    }
    for (const auto& section : partLabels) {
      sections.push_back({section.page + before, m_transplant.value(section.shifted()), 0});
    }
    std::vector<QPDFObjectHandle> entries;
    for (const auto& section : sections) {
      entries.push_back(QPDFObjectHandle::newInteger(section.page));
      entries.push_back(section.shifted());
    }
    setTree(m_receiver.catalog(), "/PageLabels", "/Nums", entries);
  }

  Document& m_receiver;
  Document& m_part;
  Transplant& m_transplant;
  pages::NamedDestinations m_names;
  std::vector<QPDFObjectHandle> m_newPages;
};

} // namespace

void join(Document& receiver, Document& part, Transplant& transplant) {
  if (part.pageCount() == 0) {
    throw common::Failure(MELDER_DAMAGED, part.path() + ": the file has no pages");
  }
  Joiner(receiver, part, transplant).run();
  if (part.isRebuilt() && transplant.dangling() > 0) {
    throw common::Failure(MELDER_DAMAGED,
                          part.path() + ": damaged: parts of its pages are missing");
  }
}

} // namespace melder
