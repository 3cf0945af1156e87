#include "outline.h"

#include "update.h"

#include <set>
#include <vector>

namespace melder {

namespace {

constexpr size_t kNone = static_cast<size_t>(-1);

/** One bookmark of a part and its place in the tree. */
struct Item {
  QPDFObjectHandle source;
  QPDFObjGen id;
  size_t parent = kNone;
  size_t previous = kNone;
  size_t next = kNone;
  size_t firstKid = kNone;
  size_t lastKid = kNone;
  long long visibleBelow = 0; ///< bookmarks that show below it when it is open
};

bool isOpen(QPDFObjectHandle item) {
  QPDFObjectHandle count = item.getKey("/Count");
  return count.isInteger() && count.getIntValue() > 0;
}

/**
 * The bookmarks below `root`, parents before kids. Links that lead back or nowhere end a level: a
 * hostile outline gives a shorter one and never an endless one.
 */
std::vector<Item> itemsBelow(QPDFObjectHandle root) {
  std::vector<Item> items;
  std::set<QPDFObjGen> seen = {root.getObjGen()};
  const auto takeLevel = [&](const QPDFObjectHandle& first, size_t parent) {
    size_t previous = kNone;
    for (QPDFObjectHandle each = first;
         each.isIndirect() && each.isDictionary() && seen.insert(each.getObjGen()).second;
         each = each.getKey("/Next")) {
      const size_t at = items.size();
      items.push_back({.source = each, .id = {}, .parent = parent, .previous = previous});
      if (previous != kNone) {
        items[previous].next = at;
      } else if (parent != kNone) {
        items[parent].firstKid = at;
      }
      if (parent != kNone) {
        items[parent].lastKid = at;
      }
      previous = at;
    }
  };
  takeLevel(root.getKey("/First"), kNone);
  for (size_t at = 0; at < items.size(); ++at) {
    takeLevel(items[at].source.getKey("/First"), at);
  }
  for (size_t at = items.size(); at-- > 0;) {
    if (items[at].parent != kNone) {
      items[items[at].parent].visibleBelow +=
          1 + (isOpen(items[at].source) ? items[at].visibleBelow : 0);
    }
  }
  return items;
}

DictText itemText(const std::vector<Item>& items, size_t at, QPDFObjGen root,
                  Transplant& transplant) {
  const Item& item = items[at];
  auto kept = QPDFObjectHandle::newDictionary();
  for (const char* key : {"/Title", "/Dest", "/A", "/C", "/F"}) {
    QPDFObjectHandle source = item.source;
    if (source.hasKey(key)) {
      kept.replaceKey(key, source.getKey(key));
    }
  }
  DictText text = transplant.entries(kept, Transplant::Sharing::Forbidden);
  const auto link = [&](const char* key, size_t to) {
    if (to != kNone) {
      text[key] = referenceTo(items[to].id);
    }
  };
  text["/Parent"] = referenceTo(item.parent == kNone ? root : items[item.parent].id);
  link("/Prev", item.previous);
  link("/Next", item.next);
  link("/First", item.firstKid);
  link("/Last", item.lastKid);
  if (item.visibleBelow > 0) {
    text["/Count"] = std::to_string(isOpen(item.source) ? item.visibleBelow : -item.visibleBelow);
  }
  return text;
}

} // namespace

void Outline::read(QPDF& pdf) {
  QPDFObjectHandle root = pdf.getRoot().getKey("/Outlines");
  if (!root.isDictionary() || !root.isIndirect()) {
    return;
  }
  m_root = root.getObjGen();
  m_rootText = dictText(root);
  std::set<QPDFObjGen> seen;
  for (QPDFObjectHandle item = root.getKey("/First");
       item.isIndirect() && item.isDictionary() && seen.insert(item.getObjGen()).second;
       item = item.getKey("/Next")) {
    m_last = item.getObjGen();
    m_lastText = dictText(item);
    m_visible += 1 + (isOpen(item) ? item.getKey("/Count").getIntValue() : 0);
  }
}

void Outline::append(Document& part, Transplant& transplant, Update& update, Catalog& catalog) {
  QPDFObjectHandle source = part.pdf.getRoot().getKey("/Outlines");
  if (!source.isDictionary()) {
    return;
  }
  std::vector<Item> items = itemsBelow(source);
  if (items.empty()) {
    return;
  }
  for (Item& item : items) {
    item.id = update.reserve();
  }
  if (!m_root.isIndirect()) {
    m_root = update.reserve();
    m_rootText = {{"/Type", "/Outlines"}};
    catalog.set("/Outlines", referenceTo(m_root));
  }
  size_t lastTop = 0;
  DictText lastText;
  for (size_t at = 0; at < items.size(); ++at) {
    DictText text = itemText(items, at, m_root, transplant);
    if (at == 0 && m_last.isIndirect()) {
      text["/Prev"] = referenceTo(m_last);
    }
    update.put(items[at].id, written(text));
    if (items[at].parent == kNone) {
      lastTop = at;
      lastText = std::move(text);
      m_visible += 1 + (isOpen(items[at].source) ? items[at].visibleBelow : 0);
    }
  }
  if (m_last.isIndirect()) {
    m_lastText["/Next"] = referenceTo(items[0].id);
    update.put(m_last, written(m_lastText));
  } else {
    m_rootText["/First"] = referenceTo(items[0].id);
  }
  m_last = items[lastTop].id;
  m_lastText = std::move(lastText);
  m_rootText["/Last"] = referenceTo(m_last);
  m_rootText["/Count"] = std::to_string(m_visible);
  update.put(m_root, written(m_rootText));
}

} // namespace melder
