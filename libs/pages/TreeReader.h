// TreeReader: the objects of a page tree, as far as a walk through it asks.
#pragma once

#include "ObjectPlaces.h"

#include <qpdf/InputSource.hh>
#include <qpdf/QPDF.hh>

#include <memory>
#include <optional>
#include <vector>

namespace pages {

/// What stands at a place of the page tree.
struct TreeObject {
  bool isDictionary = false;
  bool isNode = false; ///< has kids; else a page
  std::vector<QPDFObjGen> kids;
  QPDFObjGen resources; ///< of a page, when they are an object of their own; else object 0
};

/// Reads the objects of a page tree. The parser keeps every object that it has met, and every one
/// that such an object names, in its memory for good: half a KB or more for a page that is only
/// looked at. So plain objects are read from the file beside it, and what is in any way unusual by
/// the parser, whose word counts.
class TreeReader {
public:
  /// `input`: what the document was read from; null for a document that is not as its file.
  TreeReader(QPDF& document, std::shared_ptr<InputSource> input);

  /// An object that the tree names; an own object is made of each kid that is none.
  TreeObject read(QPDFObjGen object);

  /// Whether objects had to be made: the document in memory is not the file.
  bool madeObjects() const { return m_madeObjects; }
  QPDFObjGen made(QPDFObjectHandle direct);

private:
  std::optional<TreeObject> readPlain(QPDFObjGen object);
  TreeObject readParsed(QPDFObjGen object);

  QPDF& m_document;
  std::shared_ptr<InputSource> m_input;
  ObjectPlaces m_places;
  bool m_madeObjects = false;
};

} // namespace pages
