#include "Joining.h"

#include <qpdf/QPDFExc.hh>

#include <algorithm>
#include <functional>
#include <set>
#include <span>

namespace melder {

namespace {

using pages::dictionaryOf;

constexpr int sampledPages = 16;
constexpr int deepestForm = 8;
constexpr int deepestObject = 32;
constexpr size_t mostObjects = 4000;
/// Text and data that one append compares at most, in bytes.
constexpr size_t mostText = size_t{64} * 1024 * 1024;

using Visit = std::function<void(const QPDFObjectHandle& resource)>;

/// The fonts, images and so on that are objects of their own, below forms as well.
void visitResources(QPDFObjectHandle resources, const Visit& visit, pages::ObjGenSet& seen,
                    int depth) {
  if (!resources.isDictionary() || depth > deepestForm) {
    return;
  }
  for (const char* kind : {"/Font", "/XObject", "/ColorSpace", "/ExtGState", "/Pattern"}) {
    QPDFObjectHandle list = resources.getKey(kind);
    if (!list.isDictionary()) {
      continue;
    }
    for (auto& [name, resource] : list.getDictAsMap()) {
      if (!resource.isIndirect() || seen.size() >= mostObjects ||
          !seen.insert(resource.getObjGen()).second) {
        continue;
      }
      visit(resource);
      visitResources(pages::entryOf(resource, "/Resources"), visit, seen, depth + 1);
    }
  }
}

void visitResources(Document& document, const std::set<int32_t>& pages, const Visit& visit) {
  pages::ObjGenSet seen;
  for (const int32_t page : pages) {
    QPDFObjectHandle own = document.page(page).getKey("/Resources");
    visitResources(own.isNull() ? document.inherited(page, "/Resources") : own, visit, seen, 0);
  }
  visitResources(pages::entryOf(document.catalog().getKey("/AcroForm"), "/DR"), visit, seen, 0);
}

/// Equal objects have equal texts; few that differ have.
std::string shallowText(const QPDFObjectHandle& object) {
  QPDFObjectHandle dictionary = dictionaryOf(object);
  if (!dictionary.isDictionary()) {
    return std::to_string(static_cast<int>(QPDFObjectHandle(object).getTypeCode()));
  }
  std::string text;
  for (auto& [key, value] : dictionary.getDictAsMap()) {
    // An encrypted file tells the lengths of encrypted data.
    if (value.isScalar() && key != "/Length") {
      text += key + ' ' + value.unparseResolved() + '\n';
    }
  }
  return text;
}

/// Compares objects of the part with those of the receiving document, with everything below them.
class Comparison {
public:
  explicit Comparison(const Transplant& transplant) : m_transplant(transplant) {}

  /// False, too, when there is too much of it, of earlier ones as well, or it leads back to pages.
  bool isEqual(QPDFObjectHandle part, QPDFObjectHandle known, int depth = 0) {
    if (depth >= deepestObject || m_left == 0 || part.getTypeCode() != known.getTypeCode() ||
        part.isDictionaryOfType("/Page")) {
      return false;
    }
    spend(1);
    if (part.isDictionaryOfType("/OCG")) {
      // Layers of one name may differ in what shows.
      return m_transplant.placed(part.getObjGen()).isSameObjectAs(known);
    }
    if (part.isStream()) {
      return isEqual(part.getDict(), known.getDict(), depth + 1) && hasEqualData(part, known);
    }
    if (part.isDictionary()) {
      return std::ranges::equal(entriesOf(part), entriesOf(known), [&](auto& left, auto& right) {
        return left.first == right.first && isEqual(left.second, right.second, depth + 1);
      });
    }
    if (part.isArray()) {
      return std::ranges::equal(
          part.getArrayAsVector(), known.getArrayAsVector(),
          [&](auto& left, auto& right) { return isEqual(left, right, depth + 1); });
    }
    const std::string text = part.unparseResolved();
    spend(text.size());
    return text == known.unparseResolved();
  }

private:
  void spend(size_t bytes) { m_left -= std::min(m_left, bytes); }

  static Transplant::Entries entriesOf(QPDFObjectHandle dictionary) {
    Transplant::Entries entries = dictionary.getDictAsMap();
    for (const char* key : {"/Length", "/StructParent", "/StructParents"}) {
      entries.erase(key);
    }
    return entries;
  }

  bool hasEqualData(QPDFObjectHandle part, QPDFObjectHandle known) {
    try {
      const auto left = part.getRawStreamData();
      const auto right = known.getRawStreamData();
      spend(left->getSize() + right->getSize());
      return std::ranges::equal(std::span(left->getBuffer(), left->getSize()),
                                std::span(right->getBuffer(), right->getSize()));
    } catch (const QPDFExc&) {
      return false; // damaged data equals nothing; whether it may be lost is decided elsewhere
    }
  }

  const Transplant& m_transplant;
  size_t m_left = mostText;
};

} // namespace

bool areEqual(const Joining& joining, const QPDFObjectHandle& part, const QPDFObjectHandle& known) {
  return Comparison(joining.transplant).isEqual(part, known);
}

void placeKnownResources(Joining& joining) {
  const int32_t there = joining.receiver.pageCount();
  std::set<int32_t> sample;
  for (int32_t i = 0; i < std::min(sampledPages, there); ++i) {
    sample.insert({i, there - 1 - i});
  }
  std::multimap<std::string, QPDFObjectHandle> known; // by what tells most of them apart
  visitResources(joining.receiver, sample, [&](const QPDFObjectHandle& resource) {
    known.emplace(shallowText(resource), resource);
  });
  std::set<int32_t> all;
  for (int32_t page = 0; page < joining.part.pageCount(); ++page) {
    all.insert(page);
  }
  Comparison comparison(joining.transplant);
  visitResources(joining.part, all, [&](const QPDFObjectHandle& resource) {
    const QPDFObjGen object = resource.getObjGen();
    auto [at, end] = known.equal_range(shallowText(resource));
    for (; at != end && !joining.transplant.isPlaced(object); ++at) {
      if (comparison.isEqual(resource, at->second)) {
        joining.transplant.place(object, at->second);
      }
    }
  });
}

} // namespace melder
