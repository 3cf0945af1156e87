#pragma once

#include "Fragment.h"
#include "pages/ObjGenHash.h"

#include <qpdf/QPDFObjectHandle.hh>

#include <optional>
#include <vector>

namespace cleftor {

/// The layers of a document (optional content groups) and what tells which of them show.
class LayerIndex {
public:
  explicit LayerIndex(QPDFObjectHandle catalog);

  bool isEmpty() const { return m_positions.empty(); }
  bool isLayer(QPDFObjGen object) const { return m_positions.count(object) != 0; }

  /// The catalog's entry for an output that uses these layers, with their states and order.
  Fragment reducedTo(const pages::ObjGenSet& used) const;

private:
  QPDFObjectHandle m_properties;
  pages::ObjGenMap<uint32_t> m_positions;
};

} // namespace cleftor
