#include "FormBuilder.h"

#include <algorithm>

namespace cleftor {

namespace {

/// A signature vouches for bytes that an output does not have. What it looks like stays, as a
/// stamp: a signature field without its signature would show something else.
void makeStamp(std::map<std::string, QPDFObjectHandle>& entries) {
  for (const char* key : {"/FT", "/T", "/TU", "/TM", "/Ff", "/V", "/DV", "/DA", "/Parent", "/Kids",
                          "/MK", "/Lock", "/SV", "/A", "/AA"}) {
    entries.erase(key);
  }
  entries["/Subtype"] = QPDFObjectHandle::newName("/Stamp");
}

} // namespace

void FormBuilder::addWidget(QPDFObjectHandle widget) {
  QPDFObjGen object = widget.getObjGen();
  const FieldIndex::Field* field = m_source.fields().find(object);
  if (field == nullptr || field->isSigned) {
    return;
  }
  bool added = m_kept.try_emplace(object).second;
  m_kept[object].isWidget = true;
  while (added) {
    m_copier.place(object);
    if (field->parent.getObj() == 0) {
      m_top.push_back(object);
      return;
    }
    const QPDFObjGen parent = field->parent;
    added = m_kept.try_emplace(parent).second;
    m_kept[parent].below.push_back(object);
    object = parent;
    field = m_source.fields().find(parent);
  }
}

void FormBuilder::order(std::vector<QPDFObjGen>& fields) {
  std::sort(fields.begin(), fields.end(), [this](QPDFObjGen left, QPDFObjGen right) {
    return m_source.fields().find(left)->position < m_source.fields().find(right)->position;
  });
}

void FormBuilder::writeFieldEntries(Fragment& out, QPDFObjectHandle field,
                                    std::map<std::string, QPDFObjectHandle>& entries) {
  const FieldIndex::Field* const known = m_source.fields().find(field.getObjGen());
  if (known == nullptr) {
    return;
  }
  if (known->isSigned) {
    makeStamp(entries);
    return;
  }
  entries.erase("/Parent");
  entries.erase("/Kids");
  if (known->parent.getObj() != 0) {
    out.text("/Parent");
    out.reference(known->parent);
  }
  Kept& kept = m_kept[field.getObjGen()];
  if (!kept.below.empty()) {
    order(kept.below);
    out.text("/Kids[");
    for (const QPDFObjGen& below : kept.below) {
      out.reference(below);
    }
    out.text("]");
  }
}

void FormBuilder::writeFields() {
  for (auto& [object, kept] : m_kept) {
    if (kept.isWidget) {
      continue;
    }
    QPDFObjectHandle field = m_source.object(object);
    auto entries = field.getDictAsMap();
    Fragment out;
    out.text("<<");
    writeFieldEntries(out, field, entries);
    if (const auto events = entries.find("/AA"); events != entries.end()) {
      m_links.writeEventActions(out, "/AA", events->second);
      entries.erase(events);
    }
    entries.erase("/StructParent");
    entries.erase("/P");
    out.entries(entries);
    out.text(">>");
    m_copier.write(m_copier.place(object), out);
  }
}

Fragment FormBuilder::form() {
  order(m_top);
  Fragment out;
  out.text("<</Fields[");
  for (const QPDFObjGen& field : m_top) {
    out.reference(field);
  }
  out.text("]");
  std::vector<std::pair<uint32_t, QPDFObjGen>> calculated;
  for (const auto& [object, kept] : m_kept) {
    const uint32_t calculation = m_source.fields().find(object)->calculation;
    if (calculation != FieldIndex::none) {
      calculated.emplace_back(calculation, object);
    }
  }
  if (!calculated.empty()) {
    std::sort(calculated.begin(), calculated.end());
    out.text("/CO[");
    for (const auto& [position, object] : calculated) {
      out.reference(object);
    }
    out.text("]");
  }
  QPDFObjectHandle form = m_source.fields().form();
  for (auto& [key, value] : form.getDictAsMap()) {
    // The other description of the form covers all pages; signatures are void.
    const bool goes =
        key == "/Fields" || key == "/CO" || key == "/XFA" || key == "/SigFlags" || value.isNull();
    if (!goes) {
      out.entry(key, value);
    }
  }
  out.text(">>");
  return out;
}

} // namespace cleftor
