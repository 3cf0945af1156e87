#include "ResourcePruner.h"

#include "pages/Entries.h"

#include <array>

namespace cleftor {

namespace {

constexpr std::array categories = {"/Font",       "/XObject",   "/Pattern",   "/Shading",
                                   "/ColorSpace", "/ExtGState", "/Properties"};

/// A dictionary of a page's own is read through only when it holds more than pages commonly need.
constexpr int commonCount = 16;

using pages::entryOf;

/// Finds every name that content drawing with one resource dictionary can use: content that brings
/// no resources of its own (old forms, glyphs of Type 3 fonts, patterns, masks) draws with those of
/// whatever shows it.
class UseCollector {
public:
  explicit UseCollector(QPDFObjectHandle resources) : m_resources(resources) {}

  bool addContents(QPDFObjectHandle contents) { return m_names.addContents(contents); }

  /// Content of a stream or Type 3 font that may lack resources.
  bool addBorrower(QPDFObjectHandle owner) {
    if (!owner.isIndirect() && !owner.isDictionary()) {
      return true;
    }
    if (entryOf(owner, "/Resources").isDictionary()) {
      return true;
    }
    if (owner.isIndirect() && !m_seen.insert(owner.getObjGen()).second) {
      return true;
    }
    if (owner.isStream()) {
      const bool draws = entryOf(owner, "/Subtype").isNameAndEquals("/Form") ||
                         entryOf(owner, "/PatternType").isInteger();
      return !draws || m_names.addContents(owner);
    }
    return addGlyphs(owner);
  }

  bool addAppearances(QPDFObjectHandle annotations) {
    const int count = annotations.isArray() ? annotations.getArrayNItems() : 0;
    for (int i = 0; i < count; ++i) {
      QPDFObjectHandle appearance = entryOf(annotations.getArrayItem(i), "/AP");
      if (appearance.isDictionary() && !addAppearance(appearance, 0)) {
        return false;
      }
    }
    return true;
  }

  /// Follows what the names found so far lead to, until nothing new comes up.
  bool complete() {
    for (size_t before = 0; before != m_names.size();) {
      before = m_names.size();
      for (const char* category : categories) {
        if (!addUsed(m_resources.getKey(category))) {
          return false;
        }
      }
    }
    return true;
  }

  const ContentNames& names() const { return m_names; }

private:
  bool addUsed(QPDFObjectHandle category) {
    if (!category.isDictionary()) {
      return true;
    }
    for (auto& [name, value] : category.getDictAsMap()) {
      if (m_names.contains(name) &&
          !(addBorrower(value) && addBorrower(entryOf(entryOf(value, "/SMask"), "/G")))) {
        return false;
      }
    }
    return true;
  }

  bool addGlyphs(QPDFObjectHandle font) {
    QPDFObjectHandle glyphs = entryOf(font, "/CharProcs");
    if (!glyphs.isDictionary()) {
      return true;
    }
    for (auto& [name, glyph] : glyphs.getDictAsMap()) {
      if (!m_names.addContents(glyph)) {
        return false;
      }
    }
    return true;
  }

  /// An appearance is a stream, or streams by state.
  bool addAppearance(QPDFObjectHandle appearance, int depth) {
    for (auto& [key, value] : appearance.getDictAsMap()) {
      const bool added =
          value.isStream() ? addBorrower(value)
                           : !value.isDictionary() || depth > 2 || addAppearance(value, depth + 1);
      if (!added) {
        return false;
      }
    }
    return true;
  }

  QPDFObjectHandle m_resources;
  ContentNames m_names;
  pages::ObjGenSet m_seen;
};

} // namespace

bool ResourcePruner::holdsStream(QPDFObjectHandle value, int depth) {
  if (value.isStream()) {
    return true;
  }
  if (depth == 0) {
    return false;
  }
  if (value.isDictionary()) {
    for (auto& [key, item] : value.getDictAsMap()) {
      if (holdsStream(item, depth - 1)) {
        return true;
      }
    }
  } else if (value.isArray()) {
    const int count = std::min(value.getArrayNItems(), 64);
    for (int i = 0; i < count; ++i) {
      if (holdsStream(value.getArrayItem(i), depth - 1)) {
        return true;
      }
    }
  }
  return false;
}

bool ResourcePruner::isHeavy(QPDFObjectHandle value) {
  // Deep enough for a composite font: font, descendants, their array, descriptor, file.
  constexpr int depth = 4;
  if (!value.isIndirect()) {
    return holdsStream(value, depth);
  }
  const auto [place, added] = m_heavy.try_emplace(value.getObjGen(), false);
  if (added) {
    place->second = holdsStream(value, depth);
  }
  return place->second;
}

bool ResourcePruner::isWorthPruning(QPDFObjectHandle resources, bool shared) {
  const bool remembered = shared && resources.isIndirect();
  if (remembered) {
    const auto found = m_worth.find(resources.getObjGen());
    if (found != m_worth.end()) {
      return found->second;
    }
  }
  int heavy = 0;
  bool drawn = false;
  for (const char* category : categories) {
    QPDFObjectHandle entries = resources.getKey(category);
    if (!entries.isDictionary()) {
      continue;
    }
    shared = shared || entries.isIndirect();
    for (auto& [name, value] : entries.getDictAsMap()) {
      if (isHeavy(value)) {
        ++heavy;
        // A single font is almost surely used; a single picture may well be another page's.
        drawn = drawn || std::string_view(category) != "/Font";
      }
    }
  }
  const bool worth = shared ? heavy > 1 || drawn : heavy > commonCount;
  if (remembered) {
    m_worth.emplace(resources.getObjGen(), worth);
  }
  return worth;
}

Fragment ResourcePruner::usedPart(QPDFObjectHandle resources, const ContentNames& names) {
  Fragment out;
  out.text("<<");
  for (auto& [key, value] : resources.getDictAsMap()) {
    const bool pruned = value.isDictionary() &&
                        std::find(categories.begin(), categories.end(), key) != categories.end();
    if (!pruned) {
      if (!value.isNull()) {
        out.entry(key, value);
      }
      continue;
    }
    out.name(key);
    out.text("<<");
    for (auto& [name, item] : value.getDictAsMap()) {
      // Default colour spaces apply without being named.
      const bool isDefault = key == "/ColorSpace" && name.rfind("/Default", 0) == 0;
      if (!item.isNull() && (isDefault || names.contains(name))) {
        out.entry(name, item);
      }
    }
    out.text(">>");
  }
  out.text(">>");
  return out;
}

std::optional<Fragment> ResourcePruner::forPage(QPDFObjectHandle resources, bool shared,
                                                QPDFObjectHandle contents,
                                                QPDFObjectHandle annotations) {
  if (!resources.isDictionary() || !isWorthPruning(resources, shared)) {
    return std::nullopt;
  }
  UseCollector use(resources);
  if (!use.addContents(contents) || !use.addAppearances(annotations) || !use.complete()) {
    return std::nullopt;
  }
  return usedPart(resources, use.names());
}

std::optional<Fragment> ResourcePruner::forOwner(QPDFObjectHandle owner) {
  QPDFObjectHandle resources = entryOf(owner, "/Resources");
  if (!resources.isDictionary() || !isWorthPruning(resources, resources.isIndirect())) {
    return std::nullopt;
  }
  UseCollector use(resources);
  bool read = true;
  if (owner.isStream()) {
    read = use.addContents(owner);
  } else if (QPDFObjectHandle glyphs = entryOf(owner, "/CharProcs"); glyphs.isDictionary()) {
    for (auto& [name, glyph] : glyphs.getDictAsMap()) {
      read = read && use.addContents(glyph);
    }
  } else {
    read = false;
  }
  if (!read || !use.complete()) {
    return std::nullopt;
  }
  return usedPart(resources, use.names());
}

} // namespace cleftor
