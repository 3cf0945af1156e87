#include "Joining.h"

#include <map>

namespace melder {

namespace {

using pages::entryOf;
using pages::itemsOf;

bool showsByDefault(const QPDFObjectHandle& standard) {
  return !entryOf(standard, "/BaseState").isNameAndEquals("/OFF");
}

/// Which layers a configuration shows at first.
class Shown {
public:
  explicit Shown(const QPDFObjectHandle& standard) : m_byDefault(showsByDefault(standard)) {
    for (const auto& other : itemsOf(entryOf(standard, m_byDefault ? "/OFF" : "/ON"))) {
      m_others.insert(other.getObjGen());
    }
  }
  bool operator()(QPDFObjGen layer) const { return m_byDefault != m_others.contains(layer); }

private:
  bool m_byDefault;
  pages::ObjGenSet m_others;
};

std::vector<QPDFObjectHandle> layersOf(const QPDFObjectHandle& properties) {
  std::vector<QPDFObjectHandle> layers = itemsOf(entryOf(properties, "/OCGs"));
  std::erase_if(layers, [](auto& one) { return !one.isIndirect() || !one.isDictionary(); });
  return layers;
}

/// New layers in the list that a person sees, in the part's order, and under its automatic rules.
void addToLists(QPDFObjectHandle standard, QPDFObjectHandle partStandard,
                const std::vector<QPDFObjectHandle>& added, Transplant& transplant) {
  pages::ObjGenSet fresh;
  for (const QPDFObjectHandle& layer : added) {
    fresh.insert(layer.getObjGen());
  }
  QPDFObjectHandle order = entryOf(partStandard, "/Order");
  for (QPDFObjectHandle item : order.isArray() ? itemsOf(order) : added) {
    if (item.isArray() || fresh.contains(item.getObjGen())) {
      arrayBelow(standard, "/Order").appendItem(transplant.value(item));
    }
  }
  for (const QPDFObjectHandle& rule : itemsOf(entryOf(partStandard, "/AS"))) {
    arrayBelow(standard, "/AS").appendItem(transplant.value(rule));
  }
}

} // namespace

void joinLayers(Joining& joining) {
  Transplant& transplant = joining.transplant;
  QPDFObjectHandle partProperties = joining.part.catalog().getKey("/OCProperties");
  const std::vector<QPDFObjectHandle> layers = layersOf(partProperties);
  if (layers.empty()) {
    return;
  }
  QPDFObjectHandle properties = dictionaryBelow(joining.receiver.catalog(), "/OCProperties");
  QPDFObjectHandle standard = dictionaryBelow(properties, "/D");
  std::map<std::pair<bool, std::string>, QPDFObjectHandle> known;
  const Shown shown(standard);
  for (QPDFObjectHandle& layer : layersOf(properties)) {
    known.emplace(std::pair(shown(layer.getObjGen()), layer.unparseResolved()), layer);
  }
  const QPDFObjectHandle partStandard = entryOf(partProperties, "/D");
  const Shown shownInPart(partStandard);
  std::vector<QPDFObjectHandle> added;
  for (QPDFObjectHandle layer : layers) {
    const bool isShown = shownInPart(layer.getObjGen());
    QPDFObjectHandle copy = transplant.entries(layer.getDictAsMap());
    const auto [equal, isNew] =
        known.try_emplace({isShown, copy.unparseResolved()}, QPDFObjectHandle::newNull());
    if (isNew) {
      equal->second = joining.receiver.pdf().makeIndirectObject(copy);
      arrayBelow(properties, "/OCGs").appendItem(equal->second);
      if (isShown != showsByDefault(standard)) {
        arrayBelow(standard, isShown ? "/ON" : "/OFF").appendItem(equal->second);
      }
      added.push_back(layer);
    }
    transplant.place(layer.getObjGen(), equal->second);
  }
  if (!added.empty()) {
    addToLists(standard, partStandard, added, transplant);
  }
}

} // namespace melder
