// NamedDestinations: where the names in a document lead.
#pragma once

#include "PageTable.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace pages {

/// The named destinations of a document, by name and by page.
class NamedDestinations {
public:
  struct Destination {
    std::string name;       ///< raw bytes, or with a leading slash when it is a name object
    bool isNameObject;      ///< of the older kind, kept in a dictionary
    int32_t page;           ///< index from 0
    QPDFObjectHandle value; ///< the destination array
  };

  NamedDestinations(QPDFObjectHandle catalog, const PageTable& pages);

  /// Page index that a name or string leads to.
  std::optional<int32_t> pageOf(QPDFObjectHandle name) const;

  /// Page index that any kind of destination leads to: array, dictionary, name or string.
  std::optional<int32_t> pageOfDestination(QPDFObjectHandle destination) const;

  /// Those that lead into the ranges, each once, ordered by name, the older kind first.
  std::vector<const Destination*> within(const std::vector<PageRange>& ranges) const;

private:
  void addTree(QPDFObjectHandle root);
  void add(const std::string& name, bool isNameObject, QPDFObjectHandle value);
  std::optional<int32_t> pageOfArray(QPDFObjectHandle array) const;

  const PageTable& m_pages;
  std::vector<Destination> m_all; ///< ordered by page once built
  std::unordered_map<std::string, int32_t> m_pageByString;
  std::unordered_map<std::string, int32_t> m_pageByName;
};

} // namespace pages
