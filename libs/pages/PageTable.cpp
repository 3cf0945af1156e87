#include "PageTable.h"

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
  using OnPage = std::function<void(int32_t page, QPDFObjGen object)>;
  Walk(PageTable& table, QPDF& document, const OnPage& onPage)
      : m_table(table), m_document(document), m_onPage(onPage) {}

  void run();

private:
  /// A place in the walk: which kid of which node comes next.
  struct Step {
    uint32_t node;
    QPDFObjectHandle kids;
    int next;
  };

  QPDFObjectHandle findRoot();
  QPDFObjectHandle made(QPDFObjectHandle direct);
  void enter(QPDFObjectHandle node, uint32_t parent);
  void takeNext();
  void addPage(QPDFObjectHandle page, uint32_t node);

  PageTable& m_table;
  QPDF& m_document;
  const OnPage& m_onPage;
  std::vector<Step> m_path;
  ObjGenSet m_met; ///< pages
  ObjGenSet m_resources;
};

PageTable::PageTable(QPDF& document,
                     const std::function<void(int32_t page, QPDFObjGen object)>& onPage) {
  Walk(*this, document, onPage).run();
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
  if (!root.isIndirect()) {
    root = made(root);
  }
  if (!root.getKey("/Kids").isArray()) {
    addPage(root, noNode);
    return;
  }
  enter(root, noNode);
  while (!m_path.empty() && m_table.m_pages.size() < mostPages) {
    takeNext();
  }
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

QPDFObjectHandle PageTable::Walk::made(QPDFObjectHandle direct) {
  m_table.m_madeObjects = true;
  return m_document.makeIndirectObject(direct);
}

void PageTable::Walk::enter(QPDFObjectHandle node, uint32_t parent) {
  if (!m_table.m_nodeIndex.insert(node.getObjGen()).second) {
    return;
  }
  m_table.m_nodes.push_back({node.getObjGen(), parent});
  m_path.push_back({static_cast<uint32_t>(m_table.m_nodes.size() - 1), node.getKey("/Kids"), 0});
}

void PageTable::Walk::takeNext() {
  Step& step = m_path.back();
  if (step.next >= step.kids.getArrayNItems()) {
    m_path.pop_back();
    return;
  }
  const int position = step.next++;
  QPDFObjectHandle kid = step.kids.getArrayItem(position);
  if (m_met.count(kid.getObjGen()) != 0) {
    m_table.m_pages.push_back({kid.getObjGen(), step.node}); // twice; it may not be in memory
    return;
  }
  if (!kid.isDictionary()) {
    return;
  }
  if (!kid.isIndirect()) {
    kid = made(kid);
    step.kids.setArrayItem(position, kid);
  }
  if (kid.getKey("/Kids").isArray()) {
    enter(kid, step.node);
  } else {
    addPage(kid, step.node);
  }
}

void PageTable::Walk::addPage(QPDFObjectHandle page, uint32_t node) {
  const QPDFObjGen object = page.getObjGen();
  m_met.insert(object);
  m_table.m_pages.push_back({object, node});
  const QPDFObjectHandle resources = page.getKey("/Resources");
  if (resources.isIndirect() && !m_resources.insert(resources.getObjGen()).second) {
    m_table.m_sharedResources.insert(resources.getObjGen());
  }
  if (m_onPage) {
    m_onPage(m_table.count() - 1, object);
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
