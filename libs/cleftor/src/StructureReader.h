#pragma once

#include "Fragment.h"
#include "pages/ObjGenHash.h"
#include "pages/ObjectPlaces.h"
#include "pages/PlainTokens.h"

#include <qpdf/QPDF.hh>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace cleftor {

/// Texts of which each is kept once: elements say the same all over again.
class StructureTexts {
public:
  uint32_t add(Fragment&& text);
  std::vector<Fragment> take() { return std::move(m_texts); }

private:
  std::unordered_map<std::string, uint32_t> m_known; ///< by what they say and refer to
  std::vector<Fragment> m_texts;
};

/// Something in /K of an element (PDF 32000-1 section 14.7.2 and 14.7.4).
struct StructureKid {
  enum class Kind {
    Nothing,
    Element, ///< or what stands for content, in an object of its own
    Marked,  ///< content of the page or of a stream
    Object,  ///< an annotation or the like
    Nameless ///< an element that is no object of its own
  };
  Kind kind = Kind::Nothing;
  QPDFObjGen object = {};              ///< the element, object, or stream; 0: the page's content
  long long mark = 0;                  ///< identifier of marked content
  std::optional<QPDFObjGen> page = {}; ///< that it names; object 0: something else
};

/// What stands in an object of the tree: an element, or a kid that is an object of its own.
struct StructureObject {
  bool isElement = false;
  StructureKid kid;                ///< no element
  std::optional<std::string> name; ///< identifier
  QPDFObjGen page;                 ///< object 0: names none
  std::vector<StructureKid> kids;
  uint32_t entries = 0;    ///< text of what it is
  uint32_t attributes = 0; ///< text of what it looks like and how it is made
  uint32_t said = 0;       ///< text of what is said of it, or in its place
};

/// Reads the objects of a tree of structure, each once. Plain ones are read beside the parser, to
/// which an element is a kilobyte and some ten thousand instructions.
class StructureReader {
public:
  /// `input`: what the document was read from.
  StructureReader(QPDF& document, std::shared_ptr<InputSource> input, StructureTexts& texts);

  StructureObject read(QPDFObjGen object);

  /// What /K of the root or of an element holds.
  static std::vector<StructureKid> kidsOf(QPDFObjectHandle kids);

private:
  std::optional<StructureObject> readPlain(QPDFObjGen object);
  StructureObject readParsed(QPDFObjGen object);
  StructureObject readElement(pages::PlainTokens& tokens);
  void unpack(int stream);
  void keepElement(QPDFObjGen object, const std::shared_ptr<InputSource>& bytes,
                   qpdf_offset_t place);

  QPDF& m_document;
  std::shared_ptr<InputSource> m_input;
  StructureTexts& m_texts;
  pages::ObjectPlaces m_places;
  bool m_isEncrypted;
  std::unordered_set<int> m_opened;             ///< object streams
  pages::ObjGenMap<StructureObject> m_unpacked; ///< elements of object streams, not asked for yet
};

} // namespace cleftor
