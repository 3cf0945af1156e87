#pragma once

#include "pages/ObjGenHash.h"

#include <qpdf/QPDFObjectHandle.hh>

#include <cstdint>
#include <limits>
#include <string>

namespace cleftor {

/// The form fields and widgets of a document, each with its place in the tree of fields.
class FieldIndex {
public:
  static constexpr uint32_t none = std::numeric_limits<uint32_t>::max();

  struct Field {
    QPDFObjGen parent;           ///< object 0 for a field at the top
    uint32_t position = 0;       ///< in the order of the tree
    uint32_t calculation = none; ///< in the order of calculation
    bool isSigned = false;       ///< a signature field that holds a signature
  };

  explicit FieldIndex(QPDFObjectHandle catalog);

  /// The field or widget that an object is, nullptr for one that the form does not reach.
  const Field* find(QPDFObjGen object) const;

  /// The form dictionary, null when the document has none.
  QPDFObjectHandle form() const { return m_form; }

private:
  void walk();

  QPDFObjectHandle m_form;
  pages::ObjGenMap<Field> m_fields;
};

} // namespace cleftor
