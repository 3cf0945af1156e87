#include "Layers.h"

#include "Entries.h"

#include <map>

namespace melder {

namespace {

std::vector<QPDFObjectHandle> itemsOf(QPDFObjectHandle array) {
  return array.isArray() ? array.getArrayAsVector() : std::vector<QPDFObjectHandle>();
}

/// The standard configuration of a document's layers, null where it has none.
QPDFObjectHandle standardOf(QPDFObjectHandle properties) {
  QPDFObjectHandle standard =
      properties.isDictionary() ? properties.getKey("/D") : QPDFObjectHandle::newNull();
  return standard.isDictionary() ? standard : QPDFObjectHandle::newNull();
}

bool showsByDefault(QPDFObjectHandle standard) {
  return standard.isNull() || !standard.getKey("/BaseState").isNameAndEquals("/OFF");
}

/// Which layers a configuration shows at first.
class Shown {
public:
  explicit Shown(QPDFObjectHandle standard) : m_byDefault(showsByDefault(standard)) {
    if (!standard.isNull()) {
      for (const QPDFObjectHandle& other : itemsOf(standard.getKey(m_byDefault ? "/OFF" : "/ON"))) {
        m_others.insert(other.getObjGen());
      }
    }
  }
  bool operator()(QPDFObjGen layer) const { return m_byDefault != m_others.contains(layer); }

private:
  bool m_byDefault;
  pages::ObjGenSet m_others;
};

std::vector<QPDFObjectHandle> layersOf(QPDFObjectHandle properties) {
  std::vector<QPDFObjectHandle> layers;
  for (QPDFObjectHandle& layer : itemsOf(properties.isDictionary() ? properties.getKey("/OCGs")
                                                                   : QPDFObjectHandle::newNull())) {
    if (layer.isIndirect() && layer.isDictionary()) {
      layers.push_back(layer);
    }
  }
  return layers;
}

/// New layers in the list that a person sees, in the part's order, and under its automatic rules.
void addToLists(QPDFObjectHandle standard, QPDFObjectHandle partStandard,
                const std::vector<QPDFObjectHandle>& added, Transplant& transplant) {
  pages::ObjGenSet fresh;
  for (const QPDFObjectHandle& layer : added) {
    fresh.insert(layer.getObjGen());
  }
  const bool isListed = !partStandard.isNull() && partStandard.getKey("/Order").isArray();
  for (QPDFObjectHandle item : isListed ? itemsOf(partStandard.getKey("/Order")) : added) {
    if (item.isArray() || fresh.contains(item.getObjGen())) {
      arrayBelow(standard, "/Order").appendItem(transplant.value(item));
    }
  }
  if (!partStandard.isNull()) {
    for (const QPDFObjectHandle& rule : itemsOf(partStandard.getKey("/AS"))) {
      arrayBelow(standard, "/AS").appendItem(transplant.value(rule));
    }
  }
}

} // namespace

void joinLayers(Document& receiver, Document& part, Transplant& transplant) {
  QPDFObjectHandle partProperties = part.catalog().getKey("/OCProperties");
  const std::vector<QPDFObjectHandle> layers = layersOf(partProperties);
  if (layers.empty()) {
    return;
  }
  QPDFObjectHandle properties = dictionaryBelow(receiver.catalog(), "/OCProperties");
  QPDFObjectHandle standard = dictionaryBelow(properties, "/D");
  std::map<std::pair<bool, std::string>, QPDFObjectHandle> known;
  const Shown shown(standard);
  for (QPDFObjectHandle& layer : layersOf(properties)) {
    known.emplace(std::pair(shown(layer.getObjGen()), layer.unparseResolved()), layer);
  }
  const Shown shownInPart(standardOf(partProperties));
  std::vector<QPDFObjectHandle> added;
  for (QPDFObjectHandle layer : layers) {
    const bool isShown = shownInPart(layer.getObjGen());
    QPDFObjectHandle copy = transplant.entries(layer.getDictAsMap());
    const auto [equal, isNew] =
        known.try_emplace({isShown, copy.unparseResolved()}, QPDFObjectHandle::newNull());
    if (isNew) {
      equal->second = receiver.pdf().makeIndirectObject(copy);
      arrayBelow(properties, "/OCGs").appendItem(equal->second);
      if (isShown != showsByDefault(standard)) {
        arrayBelow(standard, isShown ? "/ON" : "/OFF").appendItem(equal->second);
      }
      added.push_back(layer);
    }
    transplant.place(layer.getObjGen(), equal->second);
  }
  if (!added.empty()) {
    addToLists(standard, standardOf(partProperties), added, transplant);
  }
}

} // namespace melder
