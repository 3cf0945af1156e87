#include "destinations.h"

#include "update.h"

#include <array>
#include <cstdio>

namespace melder {

namespace {

constexpr int kDeepest = 64;

using Found = std::vector<std::pair<std::string, QPDFObjectHandle>>;

void collectTree(QPDFObjectHandle node, int depth, std::set<QPDFObjGen>& seen, Found& found) {
  const bool again = node.isIndirect() && !seen.insert(node.getObjGen()).second;
  if (again || !node.isDictionary() || depth > kDeepest) {
    return;
  }
  for (const QPDFObjectHandle& kid : node.getKey("/Kids").isArray()
                                         ? node.getKey("/Kids").getArrayAsVector()
                                         : std::vector<QPDFObjectHandle>()) {
    collectTree(kid, depth + 1, seen, found);
  }
  QPDFObjectHandle names = node.getKey("/Names");
  for (int i = 0; names.isArray() && i + 1 < names.getArrayNItems(); i += 2) {
    if (names.getArrayItem(i).isString()) {
      found.emplace_back(names.getArrayItem(i).getStringValue(), names.getArrayItem(i + 1));
    }
  }
}

Found namesOf(QPDF& pdf) {
  Found found;
  std::set<QPDFObjGen> seen;
  collectTree(pdf.getRoot().getKey("/Names").isDictionary()
                  ? pdf.getRoot().getKey("/Names").getKey("/Dests")
                  : QPDFObjectHandle::newNull(),
              0, seen, found);
  QPDFObjectHandle old = pdf.getRoot().getKey("/Dests");
  if (old.isDictionary()) {
    for (const auto& [key, value] : old.getDictAsMap()) {
      found.emplace_back(key.substr(1), value);
    }
  }
  return found;
}

/** The explicit destination, direct; null if it does not lead to a page of this document. */
QPDFObjectHandle explicitOf(QPDFObjectHandle value, const std::set<QPDFObjGen>& pages) {
  QPDFObjectHandle target = value.isDictionary() ? value.getKey("/D") : value;
  if (!target.isArray() || target.getArrayNItems() == 0 ||
      !pages.contains(target.getArrayItem(0).getObjGen())) {
    return QPDFObjectHandle::newNull();
  }
  return target.shallowCopy();
}

} // namespace

void Destinations::read(QPDF& pdf) {
  QPDFObjectHandle names = pdf.getRoot().getKey("/Names");
  m_names = dictText(names);
  m_namesId = names.isDictionary() ? names.getObjGen() : QPDFObjGen();
  if (names.isDictionary() && names.getKey("/Dests").isDictionary()) {
    m_tree.read(names.getKey("/Dests"));
  }
  QPDFObjectHandle old = pdf.getRoot().getKey("/Dests");
  if (old.isDictionary()) {
    for (const std::string& key : old.getKeys()) {
      m_oldNames.insert(key.substr(1));
    }
  }
}

std::string Destinations::freeName(const std::string& wanted, int firstPage,
                                   const std::set<std::string>& taken) const {
  const auto isFree = [&](const std::string& name) {
    return !m_tree.contains(name) && !m_oldNames.contains(name) && !taken.contains(name);
  };
  if (isFree(wanted)) {
    return wanted;
  }
  // In front and padded: the renamed ones of one append lie side by side at the end of the tree.
  std::array<char, 16> prefix = {};
  (void)std::snprintf(prefix.data(), prefix.size(), "p%07d.", firstPage);
  std::string name = prefix.data() + wanted;
  for (int again = 2; !isFree(name); ++again) {
    name = prefix.data() + std::to_string(again) + '.' + wanted;
  }
  return name;
}

void Destinations::choose(Document& part, Transplant& transplant, int firstPage) {
  std::set<QPDFObjGen> pages;
  for (const QPDFObjectHandle& page : part.pages) {
    pages.insert(page.getObjGen());
  }
  ObjectPrinter::Renamed renamed;
  std::set<std::string> taken;
  m_waiting.clear();
  for (const auto& [name, value] : namesOf(part.pdf)) {
    QPDFObjectHandle target = explicitOf(value, pages);
    if (target.isArray() && !renamed.contains(name)) {
      const std::string fresh = freeName(name, firstPage, taken);
      renamed[name] = fresh;
      taken.insert(fresh);
      m_waiting[fresh] = target;
    }
  }
  transplant.setDestinations(std::move(renamed));
}

void Destinations::write(Transplant& transplant, Update& update, Catalog& catalog) {
  if (m_waiting.empty()) {
    return;
  }
  for (const auto& [name, target] : m_waiting) {
    m_tree.insert(name, transplant.text(target, Transplant::Sharing::Forbidden));
  }
  m_waiting.clear();
  const std::string root = referenceTo(m_tree.write(update));
  if (m_names["/Dests"] == root) {
    return;
  }
  m_names["/Dests"] = root;
  if (!m_namesId.isIndirect()) {
    m_namesId = update.reserve();
  }
  update.put(m_namesId, written(m_names));
  catalog.set("/Names", referenceTo(m_namesId));
}

} // namespace melder
