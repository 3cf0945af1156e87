#pragma once

#include "ContentNames.h"
#include "Fragment.h"
#include "pages/ObjGenHash.h"

#include <optional>

namespace cleftor {

/// Takes out of a resource dictionary what its user cannot use. Only a dictionary that may serve
/// others too, and that holds more than one thing of weight, is worth reading content for.
class ResourcePruner {
public:
  /// The part of resources that a page can use, or nothing when the dictionary may stay as it is.
  /// shared tells that other pages have the same dictionary; annotations are the page's.
  std::optional<Fragment> forPage(QPDFObjectHandle resources, bool shared,
                                  QPDFObjectHandle contents, QPDFObjectHandle annotations);

  /// The same for a form or pattern, which is a stream, and for a Type 3 font.
  std::optional<Fragment> forOwner(QPDFObjectHandle owner);

private:
  bool isWorthPruning(QPDFObjectHandle resources, bool shared);
  bool isHeavy(QPDFObjectHandle value);
  static bool holdsStream(QPDFObjectHandle value, int depth);
  static Fragment usedPart(QPDFObjectHandle resources, const ContentNames& names);

  pages::ObjGenMap<bool> m_heavy;
  pages::ObjGenMap<bool> m_worth;
};

} // namespace cleftor
