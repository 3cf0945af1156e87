// SharedResources: fonts and images that the receiving file has already.
#pragma once

#include "Document.h"
#include "Transplant.h"

#include <map>
#include <string>

namespace melder {

/// What the first and the last pages of a file draw with, and its form. Parts of one source bring
/// the same fonts each time; what equals one that is there, with everything below it, need not be
/// there twice. A look at so few pages costs the same however long the file is.
class SharedResources {
public:
  explicit SharedResources(Document& receiver);

  /// Places the resources of the part that are there already. Its layers have to be placed before.
  void placeKnown(Document& part, Transplant& transplant);

private:
  std::multimap<std::string, QPDFObjectHandle> m_known; ///< by what tells most of them apart
};

} // namespace melder
