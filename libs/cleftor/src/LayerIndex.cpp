#include "LayerIndex.h"

#include <algorithm>
#include <utility>

namespace cleftor {

namespace {

/// Deeper layer lists than this are made to exhaust the stack.
constexpr int deepestList = 64;

/// Writes layer configurations with every layer left out that an output does not use.
class Reducer {
public:
  Reducer(Fragment& out, const pages::ObjGenSet& used) : m_out(out), m_used(used) {}

  void configuration(QPDFObjectHandle configuration) {
    m_out.text("<<");
    for (auto& [key, value] : configuration.getDictAsMap()) {
      if (value.isNull()) {
        continue;
      }
      if (value.isArray() && (key == "/ON" || key == "/OFF" || key == "/Locked" ||
                              key == "/Order" || key == "/RBGroups")) {
        m_out.name(key);
        list(value, 0);
      } else if (value.isArray() && key == "/AS") {
        m_out.name(key);
        usages(value);
      } else {
        m_out.entry(key, value);
      }
    }
    m_out.text(">>");
  }

private:
  bool isUsed(QPDFObjectHandle value) const {
    return value.isIndirect() && m_used.count(value.getObjGen()) != 0;
  }

  /// Whether anything of a list stays, so that no empty group is listed.
  bool anyUsed(QPDFObjectHandle list, int depth) const {
    const int count = list.getArrayNItems();
    for (int i = 0; i < count; ++i) {
      QPDFObjectHandle item = list.getArrayItem(i);
      if (isUsed(item) || (item.isArray() && depth < deepestList && anyUsed(item, depth + 1))) {
        return true;
      }
    }
    return false;
  }

  void list(QPDFObjectHandle list, int depth) {
    m_out.text("[");
    items(list, depth);
    m_out.text("]");
  }

  void items(QPDFObjectHandle list, int depth) {
    bool parentKept = true;
    const int count = list.getArrayNItems();
    for (int i = 0; i < count; ++i) {
      QPDFObjectHandle item = list.getArrayItem(i);
      if (item.isArray()) {
        if (depth >= deepestList || !anyUsed(item, depth + 1)) {
          continue;
        }
        // Layers below one that is gone move up, else they would count as below another.
        if (parentKept) {
          this->list(item, depth + 1);
        } else {
          items(item, depth + 1);
        }
        parentKept = true;
      } else if (item.isString()) {
        m_out.value(item);
      } else {
        parentKept = isUsed(item);
        if (parentKept) {
          m_out.value(item);
        }
      }
    }
  }

  void usages(QPDFObjectHandle usages) {
    m_out.text("[");
    const int count = usages.getArrayNItems();
    for (int i = 0; i < count; ++i) {
      QPDFObjectHandle usage = usages.getArrayItem(i);
      if (!usage.isDictionary()) {
        continue;
      }
      m_out.text("<<");
      for (auto& [key, value] : usage.getDictAsMap()) {
        if (key == "/OCGs" && value.isArray()) {
          m_out.name(key);
          list(value, 0);
        } else if (!value.isNull()) {
          m_out.entry(key, value);
        }
      }
      m_out.text(">>");
    }
    m_out.text("]");
  }

  Fragment& m_out;
  const pages::ObjGenSet& m_used;
};

} // namespace

LayerIndex::LayerIndex(QPDFObjectHandle catalog) : m_properties(catalog.getKey("/OCProperties")) {
  QPDFObjectHandle groups =
      m_properties.isDictionary() ? m_properties.getKey("/OCGs") : QPDFObjectHandle::newNull();
  const int count = groups.isArray() ? groups.getArrayNItems() : 0;
  for (int i = 0; i < count; ++i) {
    QPDFObjectHandle group = groups.getArrayItem(i);
    if (group.isIndirect()) {
      m_positions.emplace(group.getObjGen(), static_cast<uint32_t>(i));
    }
  }
}

Fragment LayerIndex::reducedTo(const pages::ObjGenSet& used) const {
  std::vector<std::pair<uint32_t, QPDFObjGen>> ordered;
  for (const QPDFObjGen& layer : used) {
    ordered.emplace_back(m_positions.at(layer), layer);
  }
  std::sort(ordered.begin(), ordered.end());
  Fragment out;
  out.text("<</OCGs[");
  for (const auto& [position, layer] : ordered) {
    out.reference(layer);
  }
  out.text("]");
  QPDFObjectHandle properties = m_properties;
  Reducer reducer(out, used);
  if (QPDFObjectHandle standard = properties.getKey("/D"); standard.isDictionary()) {
    out.text("/D");
    reducer.configuration(standard);
  }
  if (QPDFObjectHandle others = properties.getKey("/Configs"); others.isArray()) {
    out.text("/Configs[");
    const int count = others.getArrayNItems();
    for (int i = 0; i < count; ++i) {
      if (QPDFObjectHandle other = others.getArrayItem(i); other.isDictionary()) {
        reducer.configuration(other);
      }
    }
    out.text("]");
  }
  out.text(">>");
  return out;
}

} // namespace cleftor
