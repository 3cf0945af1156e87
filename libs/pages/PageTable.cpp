#include "PageTable.h"

#include <limits>

namespace pages {

namespace {

constexpr uint32_t noNode = std::numeric_limits<uint32_t>::max();
constexpr size_t mostPages = 100'000'000;

} // namespace

/// A place in the walk: which kid of which node comes next.
struct PageTable::Step {
  uint32_t node;
  QPDFObjectHandle kids;
  int next;
};

PageTable::PageTable(QPDF& document,
                     const std::function<void(int32_t page, QPDFObjGen object)>& onPage)
    : m_document(document), m_onPage(onPage) {
  QPDFObjectHandle root = findRoot();
  if (root.isDictionary()) {
    walk(root);
  }
  m_resources.clear();
  m_onPage = nullptr;
}

/// Some catalogs name a node below the root of the tree.
QPDFObjectHandle PageTable::findRoot() {
  QPDFObjectHandle node = m_document.getRoot().getKey("/Pages");
  ObjGenSet seen;
  while (node.isDictionary() && node.getKey("/Parent").isDictionary() &&
         seen.insert(node.getObjGen()).second) {
    node = node.getKey("/Parent");
  }
  return node;
}

void PageTable::walk(QPDFObjectHandle root) {
  std::vector<Step> path;
  auto enter = [&](QPDFObjectHandle& node, uint32_t parent) {
    if (node.isIndirect() && !m_nodeIndex.insert(node.getObjGen()).second) {
      return;
    }
    m_nodes.push_back({node, parent});
    path.push_back({static_cast<uint32_t>(m_nodes.size() - 1), node.getKey("/Kids"), 0});
  };
  if (!root.getKey("/Kids").isArray()) {
    addPage(root, noNode);
    return;
  }
  enter(root, noNode);
  while (!path.empty() && m_pages.size() < mostPages) {
    Step& step = path.back();
    if (step.next >= step.kids.getArrayNItems()) {
      path.pop_back();
      continue;
    }
    const int position = step.next++;
    QPDFObjectHandle kid = step.kids.getArrayItem(position);
    if (m_pageIndex.count(kid.getObjGen()) != 0) {
      m_pages.push_back({kid.getObjGen(), step.node}); // listed twice; it may not be in memory
      continue;
    }
    if (!kid.isDictionary()) {
      continue;
    }
    if (kid.getKey("/Kids").isArray()) {
      enter(kid, step.node);
      continue;
    }
    if (!kid.isIndirect()) {
      kid = m_document.makeIndirectObject(kid);
      step.kids.setArrayItem(position, kid);
      m_madeObjects = true;
    }
    addPage(kid, step.node);
  }
}

void PageTable::addPage(QPDFObjectHandle page, uint32_t node) {
  const QPDFObjGen object = page.getObjGen();
  m_pageIndex.emplace(object, count());
  m_pages.push_back({object, node});
  const QPDFObjectHandle resources = page.getKey("/Resources");
  if (resources.isIndirect() && !m_resources.insert(resources.getObjGen()).second) {
    m_sharedResources.insert(resources.getObjGen());
  }
  if (m_onPage) {
    m_onPage(count() - 1, object);
  }
}

std::optional<int32_t> PageTable::indexOf(QPDFObjGen object) const {
  const auto found = m_pageIndex.find(object);
  return found == m_pageIndex.end() ? std::nullopt : std::optional(found->second);
}

QPDFObjectHandle PageTable::inherited(int32_t page, const std::string& key) const {
  uint32_t node = m_pages[static_cast<size_t>(page)].node;
  while (node != noNode) {
    QPDFObjectHandle dictionary = m_nodes[node].dictionary;
    QPDFObjectHandle value = dictionary.getKey(key);
    if (!value.isNull()) {
      return value;
    }
    node = m_nodes[node].parent;
  }
  return QPDFObjectHandle::newNull();
}

} // namespace pages
