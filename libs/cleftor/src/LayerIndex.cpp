#include "LayerIndex.h"

#include <algorithm>
#include <utility>

namespace cleftor {

namespace {

/** Deeper layer lists than this are made to exhaust the stack. */
constexpr int deepestList = 64;

/** Writes layer configurations with every layer left out that an output does not use. */
class Reducer {
public:
  Reducer(Fragment& out, const ObjGenSet& used) : out_(out), used_(used) {}

  void configuration(QPDFObjectHandle configuration) {
    out_.text("<<");
    for (auto& [key, value] : configuration.getDictAsMap()) {
      if (value.isNull()) {
        continue;
      }
      if (value.isArray() && (key == "/ON" || key == "/OFF" || key == "/Locked" ||
                              key == "/Order" || key == "/RBGroups")) {
        out_.name(key);
        list(value, 0);
      } else if (value.isArray() && key == "/AS") {
        out_.name(key);
        usages(value);
      } else {
        out_.entry(key, value);
      }
    }
    out_.text(">>");
  }

private:
  bool isUsed(QPDFObjectHandle value) const {
    return value.isIndirect() && used_.count(value.getObjGen()) != 0;
  }

  /** Whether anything of a list stays, so that no empty group is listed. */
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
    out_.text("[");
    items(list, depth);
    out_.text("]");
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
        out_.value(item);
      } else {
        parentKept = isUsed(item);
        if (parentKept) {
          out_.value(item);
        }
      }
    }
  }

  void usages(QPDFObjectHandle usages) {
    out_.text("[");
    const int count = usages.getArrayNItems();
    for (int i = 0; i < count; ++i) {
      QPDFObjectHandle usage = usages.getArrayItem(i);
      if (!usage.isDictionary()) {
        continue;
      }
      out_.text("<<");
      for (auto& [key, value] : usage.getDictAsMap()) {
        if (key == "/OCGs" && value.isArray()) {
          out_.name(key);
          list(value, 0);
        } else if (!value.isNull()) {
          out_.entry(key, value);
        }
      }
      out_.text(">>");
    }
    out_.text("]");
  }

  Fragment& out_;
  const ObjGenSet& used_;
};

} // namespace

LayerIndex::LayerIndex(QPDFObjectHandle catalog) : properties_(catalog.getKey("/OCProperties")) {
  QPDFObjectHandle groups =
      properties_.isDictionary() ? properties_.getKey("/OCGs") : QPDFObjectHandle::newNull();
  const int count = groups.isArray() ? groups.getArrayNItems() : 0;
  for (int i = 0; i < count; ++i) {
    QPDFObjectHandle group = groups.getArrayItem(i);
    if (group.isIndirect()) {
      positions_.emplace(group.getObjGen(), static_cast<uint32_t>(i));
    }
  }
}

Fragment LayerIndex::reducedTo(const ObjGenSet& used) const {
  std::vector<std::pair<uint32_t, QPDFObjGen>> ordered;
  for (const QPDFObjGen& layer : used) {
    ordered.emplace_back(positions_.at(layer), layer);
  }
  std::sort(ordered.begin(), ordered.end());
  Fragment out;
  out.text("<</OCGs[");
  for (const auto& [position, layer] : ordered) {
    out.reference(layer);
  }
  out.text("]");
  QPDFObjectHandle properties = properties_;
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
