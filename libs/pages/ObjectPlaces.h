// ObjectPlaces: where the objects of a file are.
#pragma once

#include <qpdf/QPDF.hh>

#include <utility>
#include <vector>

namespace pages {

/// The table of objects that the parser found, to read objects beside it.
class ObjectPlaces {
public:
  /// Of no object.
  ObjectPlaces() = default;
  explicit ObjectPlaces(QPDF& document);

  /// Null for one that has none. Good until forget().
  const QPDFXRefEntry* find(QPDFObjGen object) const;

  /// The parser may have found the table to be wrong, and then everything elsewhere.
  void forget() { m_places.clear(); }

  static constexpr int inFile = 1;   ///< type of an entry
  static constexpr int inStream = 2; ///< type of an entry

private:
  std::vector<std::pair<QPDFObjGen, QPDFXRefEntry>> m_places; ///< ordered by object
};

} // namespace pages
