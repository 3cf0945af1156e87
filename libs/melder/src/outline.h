#ifndef MELDER_OUTLINE_H
#define MELDER_OUTLINE_H

#include "document.h"
#include "transplant.h"

namespace melder {

/** The end of the bookmarks: a part's own follow there. */
class Outline {
public:
  void read(QPDF& pdf);
  void append(Document& part, Transplant& transplant, Update& update, Catalog& catalog);

private:
  QPDFObjGen m_root;
  DictText m_rootText;
  QPDFObjGen m_last;
  DictText m_lastText;
  long long m_visible = 0;
};

} // namespace melder

#endif
