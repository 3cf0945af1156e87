#include "page_spine.h"

#include "update.h"

#include <algorithm>
#include <set>

namespace melder {

namespace {

constexpr size_t kKids = 16;
constexpr size_t kDeepest = 32;

/** A node whose kids inherit nothing from it and that still has a size worth rewriting. */
bool takesPages(QPDFObjectHandle node) {
  static const std::set<std::string> kKnown = {"/Type", "/Kids", "/Count", "/Parent"};
  if (!node.isIndirect() || !node.isDictionary()) {
    return false;
  }
  const auto keys = node.getKeys();
  const bool plain =
      std::ranges::all_of(keys, [](const auto& key) { return kKnown.contains(key); });
  QPDFObjectHandle kids = node.getKey("/Kids");
  return plain && kids.isArray() && kids.getArrayNItems() <= static_cast<int>(kKids);
}

} // namespace

bool PageSpine::readEdge(const QPDFObjectHandle& root) {
  for (QPDFObjectHandle node = root; m_nodes.size() < kDeepest;) {
    if (!takesPages(node) || !node.getKey("/Count").isInteger()) {
      return false;
    }
    Node edge = {
        .id = node.getObjGen(), .kids = {}, .count = node.getKey("/Count").getIntValueAsInt()};
    auto kids = node.getKey("/Kids").getArrayAsVector();
    for (QPDFObjectHandle& kid : kids) {
      edge.kids.push_back(kid.getObjGen());
    }
    m_nodes.push_back(std::move(edge));
    if (kids.empty()) {
      return m_nodes.size() == 1;
    }
    if (!kids.back().hasKey("/Kids")) {
      return true;
    }
    node = kids.back();
  }
  return false;
}

void PageSpine::read(const QPDFObjectHandle& root, int count) {
  m_nodes.clear();
  m_foreign.clear();
  if (!readEdge(root)) {
    m_nodes = {{.id = root.getObjGen(), .kids = {}, .count = count}};
    m_foreign = dictText(root);
  }
}

void PageSpine::writeNode(size_t level, Update& update) {
  const Node& node = m_nodes[level];
  DictText text = {{"/Type", "/Pages"}, {"/Count", std::to_string(node.count)}};
  if (level > 0) {
    text["/Parent"] = referenceTo(m_nodes[level - 1].id);
  }
  std::string kids = "[";
  for (const QPDFObjGen kid : node.kids) {
    kids += referenceTo(kid) + ' ';
  }
  text["/Kids"] = kids + ']';
  update.put(node.id, written(text));
}

void PageSpine::addRoot(Update& update) {
  Node root = {
      .id = update.reserve(), .kids = {m_nodes.front().id}, .count = m_nodes.front().count};
  m_nodes.insert(m_nodes.begin(), std::move(root));
}

QPDFObjGen PageSpine::append(QPDFObjGen page, Update& update) {
  if (!m_foreign.empty()) {
    addRoot(update);
    m_foreign["/Parent"] = referenceTo(m_nodes[0].id);
    update.put(m_nodes[1].id, written(m_foreign));
    m_foreign.clear();
    m_nodes.resize(1);
    m_nodes.push_back({.id = update.reserve(), .kids = {}, .count = 0});
    m_nodes[0].kids.push_back(m_nodes[1].id);
  }
  if (m_nodes.back().kids.size() >= kKids) {
    size_t open = m_nodes.size();
    while (open > 0 && m_nodes[open - 1].kids.size() >= kKids) {
      --open;
    }
    if (open == 0) {
      addRoot(update);
      open = 1;
    }
    const size_t height = m_nodes.size();
    for (size_t level = open; level < height; ++level) {
      writeNode(level, update);
    }
    m_nodes.resize(open);
    while (m_nodes.size() < height) {
      const QPDFObjGen id = update.reserve();
      m_nodes.back().kids.push_back(id);
      m_nodes.push_back({.id = id, .kids = {}, .count = 0});
    }
  }
  m_nodes.back().kids.push_back(page);
  for (Node& node : m_nodes) {
    ++node.count;
  }
  return m_nodes.back().id;
}

void PageSpine::write(Update& update) {
  for (size_t level = 0; level < m_nodes.size(); ++level) {
    writeNode(level, update);
  }
}

} // namespace melder
