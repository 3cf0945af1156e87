#ifndef MELDER_DESTINATIONS_H
#define MELDER_DESTINATIONS_H

#include "document.h"
#include "sorted_tree.h"
#include "transplant.h"

#include <set>
#include <string>

namespace melder {

/** Named destinations: a part's names stay, or get the part's first page in front if they are
 * taken. */
class Destinations {
public:
  Destinations() : m_tree(SortedTree::Keys::Names) {}
  void read(QPDF& pdf);

  /** Chooses the new names; has to come before links are moved. `firstPage` counts from 1. */
  void choose(Document& part, Transplant& transplant, int firstPage);
  /** Puts the destinations chosen last into the file. */
  void write(Transplant& transplant, Update& update, Catalog& catalog);

private:
  [[nodiscard]] std::string freeName(const std::string& wanted, int firstPage,
                                     const std::set<std::string>& taken) const;

  SortedTree m_tree;
  /** Names of the dictionary that older files have in place of a tree. */
  std::set<std::string> m_oldNames;
  DictText m_names; ///< the /Names dictionary of the catalog
  QPDFObjGen m_namesId;
  std::map<std::string, QPDFObjectHandle> m_waiting;
};

} // namespace melder

#endif
