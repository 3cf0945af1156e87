#include "ObjectPlaces.h"

#include <algorithm>

namespace pages {

ObjectPlaces::ObjectPlaces(QPDF& document) {
  for (const auto& [object, entry] : document.getXRefTable()) {
    if (entry.getType() == inFile || entry.getType() == inStream) {
      m_places.emplace_back(object, entry);
    }
  }
}

const QPDFXRefEntry* ObjectPlaces::find(QPDFObjGen object) const {
  const auto place = std::lower_bound(
      m_places.begin(), m_places.end(), object,
      [](const auto& left, const QPDFObjGen& wanted) { return left.first < wanted; });
  return place != m_places.end() && place->first == object ? &place->second : nullptr;
}

} // namespace pages
