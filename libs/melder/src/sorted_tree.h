#ifndef MELDER_SORTED_TREE_H
#define MELDER_SORTED_TREE_H

#include <qpdf/QPDFObjectHandle.hh>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace melder {

class Update;

/**
 * A name tree or a number tree of the receiving file, kept so that an entry taken in rewrites one
 * small leaf and the nodes above it and not the tree.
 */
class SortedTree {
public:
  enum class Keys { Names, Numbers };

  explicit SortedTree(Keys keys);
  SortedTree(SortedTree&&) noexcept;
  SortedTree& operator=(SortedTree&&) noexcept;
  ~SortedTree();

  /** Takes over the tree below `root`; one that is not in order is taken apart and made anew. */
  void read(const QPDFObjectHandle& root);

  [[nodiscard]] bool isEmpty() const;
  [[nodiscard]] bool contains(const std::string& key) const;
  /** The entry with the highest key. */
  [[nodiscard]] std::optional<std::pair<std::string, std::string>> last() const;
  /** `value` is written text. An entry that has the key is replaced. */
  void insert(const std::string& key, const std::string& value);
  /** Writes the nodes that changed; returns the root. */
  QPDFObjGen write(Update& update);

  /** Numbers as keys that sort as the numbers do; only those of pages, so never below 0. */
  [[nodiscard]] static std::string numberKey(int64_t number);
  [[nodiscard]] static int64_t numberOf(const std::string& key);

private:
  struct Node;
  struct Reading;
  using Entry = std::pair<std::string, std::string>;

  [[nodiscard]] std::unique_ptr<Node> readNode(QPDFObjectHandle object, int depth,
                                               Reading& reading);
  [[nodiscard]] std::optional<std::string> keyOf(QPDFObjectHandle key) const;
  [[nodiscard]] std::string keyText(const std::string& key) const;
  [[nodiscard]] std::unique_ptr<Node> insertBelow(Node& node, Entry entry);
  void writeBelow(Node& node, bool isRoot, Update& update);

  Keys m_keys;
  std::unique_ptr<Node> m_root;
};

} // namespace melder

#endif
