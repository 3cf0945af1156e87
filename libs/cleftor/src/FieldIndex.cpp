#include "FieldIndex.h"

#include <vector>

namespace cleftor {

FieldIndex::FieldIndex(QPDFObjectHandle catalog) : m_form(catalog.getKey("/AcroForm")) {
  if (!m_form.isDictionary()) {
    m_form = QPDFObjectHandle::newNull();
    return;
  }
  walk();
  QPDFObjectHandle order = m_form.getKey("/CO");
  const int count = order.isArray() ? order.getArrayNItems() : 0;
  for (int i = 0; i < count; ++i) {
    const auto found = m_fields.find(order.getArrayItem(i).getObjGen());
    if (found != m_fields.end()) {
      found->second.calculation = static_cast<uint32_t>(i);
    }
  }
}

void FieldIndex::walk() {
  struct Step {
    QPDFObjectHandle field;
    QPDFObjGen parent;
    bool isSignature;
    bool hasValue;
  };
  std::vector<Step> waiting;
  const auto addAll = [&waiting](QPDFObjectHandle fields, QPDFObjGen parent, bool isSignature,
                                 bool hasValue) {
    for (int i = fields.isArray() ? fields.getArrayNItems() : 0; i > 0; --i) {
      waiting.push_back({fields.getArrayItem(i - 1), parent, isSignature, hasValue});
    }
  };
  addAll(m_form.getKey("/Fields"), QPDFObjGen(), false, false);
  while (!waiting.empty()) {
    Step step = waiting.back();
    waiting.pop_back();
    if (!step.field.isIndirect() || !step.field.isDictionary()) {
      continue;
    }
    const QPDFObjGen object = step.field.getObjGen();
    QPDFObjectHandle type = step.field.getKey("/FT");
    const bool isSignature = type.isName() ? type.getName() == "/Sig" : step.isSignature;
    const bool hasValue = step.hasValue || step.field.hasKey("/V");
    Field field;
    field.parent = step.parent;
    field.position = static_cast<uint32_t>(m_fields.size());
    field.isSigned = isSignature && hasValue;
    if (m_fields.emplace(object, field).second) {
      addAll(step.field.getKey("/Kids"), object, isSignature, hasValue);
    }
  }
}

const FieldIndex::Field* FieldIndex::find(QPDFObjGen object) const {
  const auto found = m_fields.find(object);
  return found == m_fields.end() ? nullptr : &found->second;
}

} // namespace cleftor
