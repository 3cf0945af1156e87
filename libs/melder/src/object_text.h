#ifndef MELDER_OBJECT_TEXT_H
#define MELDER_OBJECT_TEXT_H

#include "dict_text.h"
#include "digest.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace melder {

/** How one object is written: a value, or the dictionary (without /Length) and bytes of a stream.
 */
struct ObjectText {
  std::string body;
  DictText dictionary;
  std::string data;
  bool isStream = false;
  [[nodiscard]] Digest digest() const;
};

/**
 * Writes objects of one document for another. What belongs to the old document alone is left out:
 * places in its structure tree and its encryption.
 */
class ObjectPrinter {
public:
  /** The text that stands for a reference. */
  using Reference = std::function<std::string(QPDFObjectHandle)>;
  /** New names of named destinations; a name that is not in it leads nowhere. */
  using Renamed = std::map<std::string, std::string>;

  explicit ObjectPrinter(Reference reference) : m_reference(std::move(reference)) {}
  void setDestinations(Renamed names) { m_destinations = std::move(names); }

  /** A reference is written as one; everything else is spelled out. */
  [[nodiscard]] std::string value(const QPDFObjectHandle& object) const;
  [[nodiscard]] DictText entries(QPDFObjectHandle dictionary) const;
  /** The object itself, also when the handle is a reference to it. */
  [[nodiscard]] ObjectText whole(QPDFObjectHandle object) const;

private:
  [[nodiscard]] std::string spelled(QPDFObjectHandle object) const;

  Reference m_reference;
  Renamed m_destinations;
};

/** The references that writing `object` would ask for, the object's own number not among them. */
void collectReferences(QPDFObjectHandle object, std::vector<QPDFObjectHandle>& found);

/** Pages, page tree nodes and catalogs: never dragged along by a reference. */
[[nodiscard]] bool isDocumentStructure(QPDFObjectHandle object);

} // namespace melder

#endif
