#pragma once

#include "ObjectCopier.h"
#include "StructureIndex.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace cleftor {

/// The part of the tree of structure that stands on the pages of an output. Its pages and what they
/// draw keep their keys into the tree, which need not follow each other.
class StructureBuilder {
public:
  StructureBuilder(Source& source, ObjectCopier& copier, DocumentWriter& writer)
      : m_source(source), m_copier(copier), m_writer(writer) {}

  /// Adds a page (index from 0). One that is added again cannot be told apart in the tree: the
  /// output then has none.
  void addPage(int32_t page);

  /// Whether pages and annotations keep their keys; known when all pages are added.
  bool keepsKeys() const { return m_isPossible; }

  /// Writes the tree when all pages are written, with all that they draw. Number of its root; 0:
  /// the output is not tagged.
  int write();

  /// Pairs in the longest array of the tree that is not of one element or page.
  size_t mostPairs() const { return std::max(m_keyCount, m_names.size()); }

private:
  using Index = StructureIndex;

  /// Something in /K of a kept element or of the root.
  struct Kid {
    uint32_t owner;          ///< element; none: the root
    uint32_t rank;           ///< in /K of the owner in the source
    uint32_t element;        ///< none: content
    size_t place;            ///< of the page of content in m_pages
    const Index::Item* item; ///< the content
  };
  /// An entry of the tree that leads from content to its element.
  struct Parent {
    long long key;
    long long mark; ///< identifier of marked content, or that there is none
    int number;
  };
  using Kids = std::span<const Kid>;

  std::vector<Kid> gather();
  size_t slotOf(uint32_t element) const;
  void writeElement(size_t slot, Kids kids);
  void writeKids(Fragment& out, size_t slot, Kids kids);
  bool writeContent(Fragment& out, int number, const Kid& kid, bool isOnSamePage);
  void writeRoot(Kids kids);
  void writeParents(Fragment& out);
  static void writeMarks(Fragment& out, std::span<const Parent> parents);
  void writeNames(Fragment& out);
  QPDFObjGen pageAt(size_t place) const { return m_source.pages().object(m_pages[place]); }

  Source& m_source;
  ObjectCopier& m_copier;
  DocumentWriter& m_writer;
  bool m_isPossible = true;
  std::unordered_set<int32_t> m_added;
  std::vector<int32_t> m_pages;
  std::vector<long long> m_pageKeys; ///< as m_pages
  std::vector<uint32_t> m_kept;      ///< elements, ascending
  std::vector<int> m_numbers;        ///< as m_kept
  std::vector<bool> m_isComplete;    ///< as m_kept: nothing of it is left out
  std::vector<Parent> m_parents;
  std::vector<std::pair<std::string, int>> m_names; ///< identifiers of elements
  size_t m_keyCount = 0;
  int m_root = 0;
};

} // namespace cleftor
