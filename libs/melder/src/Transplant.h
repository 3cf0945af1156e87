// Transplant: objects of one document in another.
#pragma once

#include "pages/ObjGenHash.h"

#include <qpdf/QPDF.hh>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace melder {

/// Copies objects of a part, each once and with all that they refer to, into the receiving
/// document. qpdf's own copying goes as deep as references do, and a hostile part may nest deeper
/// than the stack reaches. The part has to live until the receiving document is written: the data
/// of streams is read only then.
///
/// What belongs to the part as a whole is not carried along: pages that are not placed, the tree of
/// pages, the catalog, places in the tree of structure.
class Transplant {
public:
  /// By the name in the part: the name in the receiving document.
  using Names = std::map<std::string, std::string>;

  explicit Transplant(QPDF& receiver) : m_receiver(receiver) {}
  Transplant(const Transplant&) = delete;
  Transplant& operator=(const Transplant&) = delete;

  /// References to `source` become references to `standIn`; the object itself is not copied.
  void place(QPDFObjGen source, const QPDFObjectHandle& standIn) { m_standIns[source] = standIn; }
  [[nodiscard]] bool isPlaced(QPDFObjGen source) const { return m_standIns.contains(source); }
  /// The object that stands for `source`; null when there is none.
  [[nodiscard]] QPDFObjectHandle placed(QPDFObjGen source) const;

  /// Links by name lead where these names lead from now on; those by other names lead nowhere.
  void setDestinations(Names names) { m_destinations = std::move(names); }

  /// The value as the receiving document has to hold it; what it refers to is copied later.
  [[nodiscard]] QPDFObjectHandle value(const QPDFObjectHandle& source);
  /// The same for a dictionary that is an object of its own, written out in place.
  using Entries = std::map<std::string, QPDFObjectHandle>;
  [[nodiscard]] QPDFObjectHandle entries(const Entries& dictionary);
  void copyWaiting();

  /// Number of references to objects that the part does not have.
  [[nodiscard]] int dangling() const { return m_dangling; }
  /// Whether data of a stream could not be read while the document was written.
  [[nodiscard]] bool lostData() const { return *m_lostData; }

private:
  struct Waiting {
    QPDFObjectHandle source;
    QPDFObjectHandle standIn;
  };
  QPDFObjectHandle standIn(QPDFObjectHandle source);
  void copyStream(QPDFObjectHandle source, QPDFObjectHandle target);

  QPDF& m_receiver;
  pages::ObjGenMap<QPDFObjectHandle> m_standIns;
  std::vector<Waiting> m_waiting;
  Names m_destinations;
  int m_dangling = 0;
  std::shared_ptr<bool> m_lostData = std::make_shared<bool>(false);
};

} // namespace melder
