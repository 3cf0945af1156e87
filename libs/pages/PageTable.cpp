#include "PageTable.h"

#include "TreeReader.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace pages {

namespace {

constexpr uint32_t noNode = std::numeric_limits<uint32_t>::max();
constexpr size_t mostPages = 100'000'000;

} // namespace

/// The walk through the tree, and what it alone has to remember.
class PageTable::Walk {
public:
  Walk(PageTable& table, QPDF& document, std::shared_ptr<InputSource> input)
      : m_table(table), m_document(document), m_reader(document, std::move(input)) {}

  void run();

private:
  /// A place in the walk: which kid of which node comes next.
  struct Step {
    uint32_t node;
    std::vector<QPDFObjGen> kids;
    size_t next;
  };

  QPDFObjectHandle findRoot();
  void take(QPDFObjGen object, uint32_t node);
  void enter(QPDFObjGen object, uint32_t parent, std::vector<QPDFObjGen> kids);
  void addPage(QPDFObjGen object, uint32_t node, QPDFObjGen resources);

  PageTable& m_table;
  QPDF& m_document;
  TreeReader m_reader;
  std::vector<Step> m_path;
  ObjGenSet m_met; ///< pages
  ObjGenSet m_resources;
};

PageTable::PageTable(QPDF& document, std::shared_ptr<InputSource> input) {
  Walk(*this, document, std::move(input)).run();
  m_pages.shrink_to_fit();
  m_byObject.resize(m_pages.size());
  std::iota(m_byObject.begin(), m_byObject.end(), 0);
  std::sort(m_byObject.begin(), m_byObject.end(), [this](int32_t left, int32_t right) {
    return std::pair(object(left), left) < std::pair(object(right), right);
  });
}

void PageTable::Walk::run() {
  QPDFObjectHandle root = findRoot();
  if (!root.isDictionary()) {
    return;
  }
  take(root.isIndirect() ? root.getObjGen() : m_reader.made(root), noNode);
  while (!m_path.empty() && m_table.m_pages.size() < mostPages) {
    Step& step = m_path.back();
    if (step.next == step.kids.size()) {
      m_path.pop_back();
    } else {
      const QPDFObjGen kid = step.kids[step.next++];
      take(kid, step.node);
    }
  }
  m_table.m_madeObjects = m_reader.madeObjects();
}

/// Some catalogs name a node below the root of the tree.
QPDFObjectHandle PageTable::Walk::findRoot() {
  QPDFObjectHandle node = m_document.getRoot().getKey("/Pages");
  ObjGenSet seen;
  while (node.isDictionary() && node.getKey("/Parent").isDictionary() &&
         seen.insert(node.getObjGen()).second) {
    node = node.getKey("/Parent");
  }
  return node;
}

void PageTable::Walk::take(QPDFObjGen object, uint32_t node) {
  if (m_met.count(object) != 0) {
    m_table.m_pages.push_back({object, node}); // listed twice
    return;
  }
  if (m_table.isNode(object)) {
    return;
  }
  TreeObject found = m_reader.read(object);
  if (found.isNode) {
    enter(object, node, std::move(found.kids));
  } else if (found.isDictionary) {
    addPage(object, node, found.resources);
  }
}

void PageTable::Walk::enter(QPDFObjGen object, uint32_t parent, std::vector<QPDFObjGen> kids) {
  m_table.m_nodeIndex.insert(object);
  m_table.m_nodes.push_back({object, parent});
  m_path.push_back({static_cast<uint32_t>(m_table.m_nodes.size() - 1), std::move(kids), 0});
}

void PageTable::Walk::addPage(QPDFObjGen object, uint32_t node, QPDFObjGen resources) {
  m_met.insert(object);
  m_table.m_pages.push_back({object, node});
  if (resources.isIndirect() && !m_resources.insert(resources).second) {
    m_table.m_sharedResources.insert(resources);
  }
}

std::optional<int32_t> PageTable::indexOf(QPDFObjGen wanted) const {
  const auto found =
      std::lower_bound(m_byObject.begin(), m_byObject.end(), wanted,
                       [this](int32_t page, QPDFObjGen other) { return object(page) < other; });
  return found == m_byObject.end() || object(*found) != wanted ? std::nullopt
                                                               : std::optional(*found);
}

QPDFObjectHandle PageTable::inherited(QPDF& document, int32_t page, const std::string& key) const {
  uint32_t node = m_pages[static_cast<size_t>(page)].node;
  while (node != noNode) {
    QPDFObjectHandle value = document.getObject(m_nodes[node].object).getKey(key);
    if (!value.isNull()) {
      return value;
    }
    node = m_nodes[node].parent;
  }
  return QPDFObjectHandle::newNull();
}

} // namespace pages
