#pragma once

#include "DocumentWriter.h"
#include "Fragment.h"
#include "Source.h"
#include "pages/ObjGenHash.h"

#include <utility>
#include <vector>

namespace cleftor {

/// Copies source objects into one output, each once and together with what it refers to. The
/// copying ends where other pages begin: a reference to a page outside the range, to the page tree,
/// to structure, fields, annotations or bookmarks that nobody placed becomes null.
class ObjectCopier {
public:
  ObjectCopier(Source& source, DocumentWriter& writer) : m_source(source), m_writer(writer) {}

  /// Gives a source object its number in the output; whoever places it writes it too.
  int place(QPDFObjGen object);

  /// Whether the object has a number already.
  bool isPlaced(QPDFObjGen object) const { return m_numbers.count(object) != 0; }

  /// Number of an object, which is copied later if need be; 0 when it stays out.
  int numberOf(QPDFObjGen object);

  /// Makes sure that everything a fragment refers to gets copied.
  void request(const Fragment& body);

  /// Writes an object of the output.
  void write(int number, const Fragment& body);

  /// Copies everything that was referred to and is not written yet.
  void copyWaiting();

  /// Layers that the copied objects depend on.
  const pages::ObjGenSet& usedLayers() const { return m_usedLayers; }

private:
  void copy(QPDFObjGen object, int number);
  void copyStream(QPDFObjectHandle stream, int number, bool keep);
  void writeCopied(int number, const CopiedObject& copied);
  void resolve(const Fragment& fragment);
  bool staysOut(QPDFObjectHandle object) const;
  Fragment streamEntries(QPDFObjectHandle stream);
  Fragment bodyOf(QPDFObjectHandle object);

  Source& m_source;
  DocumentWriter& m_writer;
  pages::ObjGenMap<int> m_numbers;
  std::vector<std::pair<QPDFObjGen, int>> m_waiting;
  pages::ObjGenSet m_usedLayers;
  std::string m_scratch;
};

} // namespace cleftor
