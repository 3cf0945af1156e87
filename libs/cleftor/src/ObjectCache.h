#pragma once

#include "Fragment.h"
#include "pages/ObjGenHash.h"

#include <memory>
#include <string>

namespace cleftor {

/// A source object ready to be written into any output.
struct CopiedObject {
  Fragment body;    ///< the object, or the entries of a stream's dictionary without its length
  std::string data; ///< a stream's data as stored
  bool isStream = false;
};

/// Objects that outputs share: fonts, images, document information. What is asked for a second time
/// is kept; when the room is used up everything goes, and what is still shared is soon back.
class ObjectCache {
public:
  /// Largest stream worth keeping, in bytes as the source states them.
  static constexpr size_t largestData = size_t{512} * 1024;

  /// The kept object, or nullptr.
  const CopiedObject* find(QPDFObjGen object) const;

  /// Whether the object was asked for before, so that it is worth keeping now.
  bool isWanted(QPDFObjGen object);

  void keep(QPDFObjGen object, CopiedObject&& copied);

private:
  static constexpr size_t room = size_t{12} * 1024 * 1024;

  pages::ObjGenMap<std::unique_ptr<CopiedObject>> m_kept;
  pages::ObjGenSet m_seen;
  size_t m_used = 0;
};

} // namespace cleftor
