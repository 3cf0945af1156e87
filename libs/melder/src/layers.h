#ifndef MELDER_LAYERS_H
#define MELDER_LAYERS_H

#include "document.h"
#include "transplant.h"

#include <set>
#include <string>
#include <vector>

namespace melder {

/**
 * Optional content. A layer of a part that equals one of the file (name, use, shown or not) becomes
 * that one: the layers of parts cut from one source are switched together, and the lists do
 * not grow with every append.
 */
class Layers {
public:
  void read(QPDF& pdf);
  /** Has to come before pages are moved. */
  void append(Document& part, Transplant& transplant, Update& update, Catalog& catalog);

private:
  [[nodiscard]] static std::string keyOf(const std::string& group, bool shown);
  void addToLists(QPDFObjectHandle part, const std::vector<QPDFObjectHandle>& added,
                  Transplant& transplant);
  void write(Update& update, Catalog& catalog);

  QPDFObjGen m_id;
  DictText m_properties; ///< without the groups and the default configuration
  DictText m_default;    ///< without the lists below
  std::vector<std::string> m_groups;
  std::vector<std::string> m_on;
  std::vector<std::string> m_off;
  std::vector<std::string> m_order;
  std::vector<std::string> m_automatic;
  bool m_shownByDefault = true;
  std::map<std::string, QPDFObjGen> m_known;
};

} // namespace melder

#endif
