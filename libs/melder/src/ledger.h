#ifndef MELDER_LEDGER_H
#define MELDER_LEDGER_H

#include "destinations.h"
#include "document.h"
#include "form.h"
#include "labels.h"
#include "layers.h"
#include "outline.h"
#include "page_spine.h"
#include "transplant.h"
#include "xref_chain.h"

#include <optional>
#include <string>

namespace melder {

class DiskFile;

/**
 * What an append has to know of the receiving file: the ends of its structures and never the
 * whole. After an append it describes the file with the part; after a failure it is worth nothing.
 */
class Ledger {
public:
  /**
   * Nothing if the file cannot take an incremental update as it is: it is encrypted, was repaired
   * on reading, has two cross-reference tables for readers of two ages, and so on.
   */
  [[nodiscard]] static std::optional<Ledger> of(Document& existing);

  /** Writes the part to the end of `file`, which holds the bytes that the ledger describes. */
  void append(Document& part, const DiskFile& file);

private:
  [[nodiscard]] bool readEnd(Document& existing);
  void raiseVersion(QPDF& part);
  void writePages(Document& part, Transplant& transplant, Update& update,
                  const std::vector<QPDFObjGen>& numbers);
  [[nodiscard]] DictText trailer(uint64_t updateStart) const;

  XrefKind m_kind = XrefKind::Table;
  XrefChain m_chain;
  int m_nextNumber = 1;
  DictText m_trailer;
  std::string m_firstId;
  std::string m_version;
  Catalog m_catalog;
  PageSpine m_pages;
  Destinations m_destinations;
  Outline m_outline;
  Form m_form;
  Layers m_layers;
  Labels m_labels;
  SharedObjects m_shared;
};

} // namespace melder

#endif
