#include "FieldIndex.h"

#include <vector>

namespace cleftor {

FieldIndex::FieldIndex(QPDFObjectHandle catalog) : form_(catalog.getKey("/AcroForm")) {
  if (!form_.isDictionary()) {
    form_ = QPDFObjectHandle::newNull();
    return;
  }
  walk();
  QPDFObjectHandle order = form_.getKey("/CO");
  const int count = order.isArray() ? order.getArrayNItems() : 0;
  for (int i = 0; i < count; ++i) {
    const auto found = fields_.find(order.getArrayItem(i).getObjGen());
    if (found != fields_.end()) {
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
  addAll(form_.getKey("/Fields"), QPDFObjGen(), false, false);
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
    field.position = static_cast<uint32_t>(fields_.size());
    field.isSigned = isSignature && hasValue;
    if (fields_.emplace(object, field).second) {
      addAll(step.field.getKey("/Kids"), object, isSignature, hasValue);
    }
  }
}

const FieldIndex::Field* FieldIndex::find(QPDFObjGen object) const {
  const auto found = fields_.find(object);
  return found == fields_.end() ? nullptr : &found->second;
}

} // namespace cleftor
