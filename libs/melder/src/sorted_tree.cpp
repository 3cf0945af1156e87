#include "sorted_tree.h"

#include "dict_text.h"
#include "update.h"

#include <algorithm>
#include <set>

namespace melder {

namespace {

constexpr size_t kMost = 16;
/** A foreign node is kept as it is up to this size; a larger one would cost too much each time. */
constexpr size_t kTolerated = 64;
constexpr int kDeepest = 64;

} // namespace

struct SortedTree::Node {
  QPDFObjGen id;
  std::vector<Entry> entries;
  std::vector<std::unique_ptr<Node>> kids;
  bool changed = true;

  [[nodiscard]] size_t size() const { return kids.empty() ? entries.size() : kids.size(); }
  [[nodiscard]] const std::string& first() const {
    return kids.empty() ? entries.front().first : kids.front()->first();
  }
  [[nodiscard]] const Entry& lastEntry() const {
    return kids.empty() ? entries.back() : kids.back()->lastEntry();
  }
  [[nodiscard]] const std::string& last() const { return lastEntry().first; }
  void collect(std::vector<Entry>& all) const {
    all.insert(all.end(), entries.begin(), entries.end());
    for (const auto& kid : kids) {
      kid->collect(all);
    }
  }
};

/** What is found out about a tree while it is read. */
struct SortedTree::Reading {
  bool tidy = true; ///< it can stay as it is
  std::set<QPDFObjGen> seen;
};

SortedTree::SortedTree(Keys keys) : m_keys(keys), m_root(std::make_unique<Node>()) {}
SortedTree::SortedTree(SortedTree&&) noexcept = default;
SortedTree& SortedTree::operator=(SortedTree&&) noexcept = default;
SortedTree::~SortedTree() = default;

std::string SortedTree::numberKey(int64_t number) {
  std::string digits = std::to_string(std::max<int64_t>(number, 0));
  return std::string(20 - digits.size(), '0') + digits;
}

int64_t SortedTree::numberOf(const std::string& key) {
  return std::stoll(key);
}

std::optional<std::string> SortedTree::keyOf(QPDFObjectHandle key) const {
  if (m_keys == Keys::Names && key.isString()) {
    return key.getStringValue();
  }
  if (m_keys == Keys::Numbers && key.isInteger() && key.getIntValue() >= 0) {
    return numberKey(key.getIntValue());
  }
  return std::nullopt;
}

std::string SortedTree::keyText(const std::string& key) const {
  return m_keys == Keys::Names ? stringText(key) : std::to_string(numberOf(key));
}

std::unique_ptr<SortedTree::Node> SortedTree::readNode(QPDFObjectHandle object, int depth,
                                                       Reading& reading) {
  auto node = std::make_unique<Node>();
  node->id = object.getObjGen();
  node->changed = false;
  const bool again = object.isIndirect() && !reading.seen.insert(object.getObjGen()).second;
  if (again || !object.isDictionary() || depth > kDeepest) {
    reading.tidy = false;
    return node;
  }
  reading.tidy = reading.tidy && object.isIndirect();
  QPDFObjectHandle kids = object.getKey("/Kids");
  QPDFObjectHandle list = object.getKey(m_keys == Keys::Names ? "/Names" : "/Nums");
  if (kids.isArray()) {
    for (const QPDFObjectHandle& kid : kids.getArrayAsVector()) {
      auto below = readNode(kid, depth + 1, reading);
      if (below->size() > 0) {
        node->kids.push_back(std::move(below));
      }
    }
  } else if (list.isArray()) {
    const auto items = list.getArrayAsVector();
    for (size_t i = 0; i + 1 < items.size(); i += 2) {
      if (auto key = keyOf(items[i])) {
        QPDFObjectHandle value = items[i + 1];
        node->entries.emplace_back(std::move(*key), value.unparse());
      }
    }
  }
  reading.tidy = reading.tidy && node->size() > 0 && node->size() <= kTolerated;
  return node;
}

void SortedTree::read(const QPDFObjectHandle& root) {
  Reading reading;
  auto found = readNode(root, 0, reading);
  std::vector<Entry> all;
  found->collect(all);
  const auto byKey = [](const Entry& a, const Entry& b) { return a.first < b.first; };
  const auto outOfOrder = [](const Entry& a, const Entry& b) { return a.first >= b.first; };
  if (reading.tidy && std::ranges::adjacent_find(all, outOfOrder) == all.end()) {
    m_root = std::move(found);
    return;
  }
  m_root = std::make_unique<Node>();
  std::ranges::stable_sort(all, byKey);
  for (Entry& entry : all) {
    if (!contains(entry.first)) {
      insert(entry.first, entry.second);
    }
  }
}

bool SortedTree::isEmpty() const {
  return m_root->size() == 0;
}

bool SortedTree::contains(const std::string& key) const {
  const Node* node = m_root.get();
  while (!node->kids.empty()) {
    const auto kid = std::ranges::lower_bound(node->kids, key, {},
                                              [](const auto& each) { return each->last(); });
    if (kid == node->kids.end()) {
      return false;
    }
    node = kid->get();
  }
  return std::ranges::binary_search(node->entries, key, {}, &Entry::first);
}

std::optional<std::pair<std::string, std::string>> SortedTree::last() const {
  return isEmpty() ? std::nullopt : std::optional(m_root->lastEntry());
}

/** Returns the right half when the node had to be split. */
std::unique_ptr<SortedTree::Node> SortedTree::insertBelow(Node& node, Entry entry) {
  node.changed = true;
  size_t at = 0;
  if (node.kids.empty()) {
    auto place = std::ranges::lower_bound(node.entries, entry.first, {}, &Entry::first);
    at = static_cast<size_t>(place - node.entries.begin());
    if (place != node.entries.end() && place->first == entry.first) {
      place->second = std::move(entry.second);
    } else {
      node.entries.insert(place, std::move(entry));
    }
  } else {
    const auto place = std::ranges::lower_bound(node.kids, entry.first, {},
                                                [](const auto& each) { return each->last(); });
    at = std::min(static_cast<size_t>(place - node.kids.begin()), node.kids.size() - 1);
    if (auto half = insertBelow(*node.kids[at], std::move(entry))) {
      ++at;
      node.kids.insert(node.kids.begin() + static_cast<std::ptrdiff_t>(at), std::move(half));
    }
  }
  if (node.size() <= kMost) {
    return nullptr;
  }
  // Keys mostly come in order: leaving the left node full keeps the tree half the size.
  const size_t cut = at + 1 == node.size() ? node.size() - 1 : node.size() / 2;
  auto right = std::make_unique<Node>();
  const auto from = static_cast<std::ptrdiff_t>(cut);
  if (node.kids.empty()) {
    right->entries.assign(std::make_move_iterator(node.entries.begin() + from),
                          std::make_move_iterator(node.entries.end()));
    node.entries.resize(cut);
  } else {
    right->kids.assign(std::make_move_iterator(node.kids.begin() + from),
                       std::make_move_iterator(node.kids.end()));
    node.kids.resize(cut);
  }
  return right;
}

void SortedTree::insert(const std::string& key, const std::string& value) {
  if (auto half = insertBelow(*m_root, {key, value})) {
    auto root = std::make_unique<Node>();
    // The root keeps its object number, so that what refers to the tree stays as it is.
    std::swap(root->id, m_root->id);
    root->kids.push_back(std::move(m_root));
    root->kids.push_back(std::move(half));
    m_root = std::move(root);
  }
}

void SortedTree::writeBelow(Node& node, bool isRoot, Update& update) {
  if (!node.changed) {
    return;
  }
  if (!node.id.isIndirect()) {
    node.id = update.reserve();
  }
  DictText text;
  std::string list = "[";
  for (const auto& kid : node.kids) {
    writeBelow(*kid, false, update);
    list += referenceTo(kid->id) + ' ';
  }
  for (const auto& [key, value] : node.entries) {
    list += keyText(key) + ' ' + value + ' ';
  }
  const char* leafKey = m_keys == Keys::Names ? "/Names" : "/Nums";
  text[node.kids.empty() ? leafKey : "/Kids"] = list + ']';
  if (!isRoot) {
    text["/Limits"] = '[' + keyText(node.first()) + ' ' + keyText(node.last()) + ']';
  }
  update.put(node.id, written(text));
  node.changed = false;
}

QPDFObjGen SortedTree::write(Update& update) {
  writeBelow(*m_root, true, update);
  return m_root->id;
}

} // namespace melder
