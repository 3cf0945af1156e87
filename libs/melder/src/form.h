#ifndef MELDER_FORM_H
#define MELDER_FORM_H

#include "document.h"
#include "transplant.h"

#include <set>
#include <string>
#include <vector>

namespace melder {

/**
 * The fields of the receiving file's form. A field of a part keeps its name while the name is free.
 * Otherwise it goes below a naming field made for the part ("Appended1.3.Total"), so that it stays
 * a field of its own. The naming fields form a tree of small nodes: a form that a thousand
 * parts repeat must not become one long list that each append writes again.
 */
class Form {
public:
  void read(QPDF& pdf);
  /** Has to come before pages are moved: it changes fields of the part. */
  void append(Document& part, Transplant& transplant, Update& update, Catalog& catalog);

private:
  struct Naming {
    QPDFObjGen id;
    std::string name; ///< the part of the full name that this node gives
    std::vector<std::string> kids;
  };
  void readNaming(const std::vector<QPDFObjectHandle>& roots);
  [[nodiscard]] bool readNamingEdge(const QPDFObjectHandle& root, int height);
  QPDFObjGen openNaming(Update& update);
  void writeNaming(size_t level, Update& update);

  [[nodiscard]] std::map<std::string, std::string> mergeFonts(QPDFObjectHandle resources,
                                                              Transplant& transplant);
  void rootFields(const std::vector<QPDFObjectHandle>& fields, Transplant& transplant);
  void nameFields(const std::vector<QPDFObjectHandle>& fields, Document& part,
                  Transplant& transplant, Update& update);
  void write(Update& update, Catalog& catalog);

  QPDFObjGen m_id;
  DictText m_entries; ///< of the form, without fields and resources
  std::vector<std::string> m_fields;
  std::set<std::string> m_names; ///< of the fields at the top
  QPDFObjGen m_resourcesId;
  DictText m_resources;
  DictText m_fonts;
  bool m_changed = false;
  bool m_fontsChanged = false;
  /** The naming fields at the right edge, root first; as many as the root's name says. */
  std::vector<Naming> m_naming;
  int m_namingHeight = 0;
};

} // namespace melder

#endif
