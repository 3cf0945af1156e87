#include "StructureIndex.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace cleftor {

namespace {

/// Trees of office programs are some thirty levels deep.
constexpr size_t deepestElement = 500;
/// An element takes some 300 bytes while the tree is walked.
constexpr size_t mostElements = 4'000'000;

/// What an element is, whatever of it is kept.
constexpr std::array<std::string_view, 7> plainEntries = {
    "/S", "/ID", "/Lang", "/C", "/R", "/NS", "/PhoneticAlphabet"};
/// What holds for all of it, so for what is on other pages, too, when a part of it is there.
constexpr std::array<std::string_view, 1> attributes = {"/A"};
constexpr std::array<std::string_view, 5> said = {"/T", "/Alt", "/E", "/ActualText", "/Phoneme"};

int kidCount(QPDFObjectHandle kids) {
  return kids.isArray() ? kids.getArrayNItems() : (kids.isNull() ? 0 : 1);
}

QPDFObjectHandle kidAt(QPDFObjectHandle kids, int rank) {
  return kids.isArray() ? kids.getArrayItem(rank) : kids;
}

} // namespace

/// A place in the walk: which kid of which element comes next.
struct StructureIndex::Step {
  uint32_t element;
  QPDFObjectHandle kids;
  std::optional<int32_t> page; ///< that the element names, for content that names none
  int next = 0;
  int32_t firstPage = -1; ///< with something on it so far; -1: nothing so far
  int32_t lastPage = -1;
};

class StructureIndex::Walk {
public:
  Walk(StructureIndex& index, QPDF& document, const pages::PageTable& pages)
      : m_index(index), m_document(document), m_pages(pages) {
    std::map<std::string, QPDFObjectHandle> nothing;
    m_noText = textOf(nothing, said);
  }

  const std::vector<Found>& found() const { return m_found; }

  void walk(QPDFObjectHandle root) {
    m_path.push_back({none, root.getKey("/K"), {}});
    while (m_index.m_isSound) {
      Step& step = m_path.back();
      if (step.next < kidCount(step.kids)) {
        const int rank = step.next++;
        take(step, static_cast<uint32_t>(rank), kidAt(step.kids, rank));
      } else if (m_path.size() > 1) {
        leave();
      } else {
        return;
      }
    }
  }

private:
  void take(Step& step, uint32_t rank, QPDFObjectHandle kid) {
    if (kid.isInteger()) {
      addMarked(step, rank, step.page, kid, none);
    } else if (!kid.isDictionary()) {
      return;
    } else if (kid.getKey("/S").isName()) {
      enter(step, rank, kid);
    } else if (QPDFObjectHandle mark = kid.getKey("/MCID"); mark.isInteger()) {
      const auto page = kid.hasKey("/Pg") ? pageOf(kid) : step.page;
      addMarked(step, rank, page, mark, objectOf(kid.getKey("/Stm")));
    } else if (QPDFObjectHandle object = kid.getKey("/Obj"); object.isIndirect()) {
      auto page = kid.hasKey("/Pg") ? pageOf(kid) : step.page;
      if (!page && object.isDictionary()) {
        page = pageOf(object, "/P");
      }
      addContent(step, page, {step.element, rank, Item::none, objectOf(object)});
    }
  }

  uint32_t objectOf(const QPDFObjectHandle& object) {
    if (!object.isIndirect()) {
      return none;
    }
    m_index.m_objects.push_back(object.getObjGen());
    return static_cast<uint32_t>(m_index.m_objects.size() - 1);
  }

  std::optional<int32_t> pageOf(QPDFObjectHandle owner, const char* key = "/Pg") const {
    QPDFObjectHandle page = owner.getKey(key);
    return page.isIndirect() ? m_pages.indexOf(page.getObjGen()) : std::nullopt;
  }

  void addMarked(Step& step, uint32_t rank, std::optional<int32_t> page, QPDFObjectHandle mark,
                 uint32_t object) {
    const long long value = mark.getIntValue();
    if (value >= 0 && value <= std::numeric_limits<int32_t>::max()) {
      addContent(step, page, {step.element, rank, static_cast<int32_t>(value), object});
    }
  }

  void addContent(Step& step, std::optional<int32_t> page, const Item& item) {
    if (page && step.element != none) {
      m_found.push_back({*page, item});
      noteContent(step, size(), *page, *page);
    }
  }

  /// end: the first element that is not before what was found on these pages.
  void noteContent(Step& step, uint32_t end, int32_t firstPage, int32_t lastPage) {
    if (step.firstPage < 0) {
      addEmpty(step.element == none ? 0 : step.element + 1, end, firstPage);
      step.firstPage = firstPage;
    }
    step.lastPage = lastPage;
  }

  void addEmpty(uint32_t first, uint32_t end, int32_t page) {
    for (uint32_t element = first; element < end; ++element) {
      // It only seems to be here, and what is said of it may be of other pages.
      m_index.m_elements[element].said = m_noText;
      m_found.push_back({page, {element, none, Item::none, none}});
    }
  }

  void enter(const Step& step, uint32_t rank, QPDFObjectHandle element) {
    // One without a number cannot be what content refers to.
    m_index.m_isSound =
        element.isIndirect() && m_path.size() < deepestElement && size() < mostElements;
    if (!m_index.m_isSound || !m_seen.insert(element.getObjGen()).second) {
      return;
    }
    if (QPDFObjectHandle name = element.getKey("/ID"); name.isString()) {
      m_index.m_names.emplace_back(size(), name.getStringValue());
    }
    auto entries = element.getDictAsMap();
    QPDFObjectHandle kids = element.getKey("/K");
    const Step next{size(), kids, pageOf(element)};
    m_index.m_elements.push_back({step.element, rank, static_cast<uint32_t>(kidCount(kids)),
                                  textOf(entries, plainEntries), textOf(entries, attributes),
                                  textOf(entries, said)});
    m_document.replaceObject(element.getObjGen(), QPDFObjectHandle::newNull());
    m_path.push_back(next);
  }

  uint32_t textOf(std::map<std::string, QPDFObjectHandle>& entries,
                  std::span<const std::string_view> keys) {
    Fragment text;
    for (auto& [key, value] : entries) {
      if (std::find(keys.begin(), keys.end(), key) != keys.end() && !value.isNull()) {
        text.entry(key, value);
      }
    }
    std::string known = text.bytes();
    for (const auto& [at, object] : text.references()) {
      known += ' ' + std::to_string(at) + ' ' + object.unparse();
    }
    const auto [place, isNew] =
        m_known.try_emplace(std::move(known), static_cast<uint32_t>(m_index.m_texts.size()));
    if (isNew) {
      m_index.m_texts.push_back(std::move(text));
    }
    return place->second;
  }

  void leave() {
    const Step done = m_path.back();
    m_path.pop_back();
    Step& above = m_path.back();
    if (done.firstPage >= 0) {
      noteContent(above, done.element, done.firstPage, done.lastPage);
    } else if (above.firstPage >= 0) {
      addEmpty(done.element, size(), above.lastPage);
    }
  }

  uint32_t size() const { return static_cast<uint32_t>(m_index.m_elements.size()); }

  StructureIndex& m_index;
  QPDF& m_document;
  const pages::PageTable& m_pages;
  std::vector<Step> m_path;
  std::vector<Found> m_found;
  pages::ObjGenSet m_seen;
  std::unordered_map<std::string, uint32_t> m_known; ///< texts, with what they refer to
  uint32_t m_noText = 0;
};

StructureIndex::StructureIndex(QPDF& document, const pages::PageTable& pages) {
  Walk walk(*this, document, pages);
  QPDFObjectHandle root = document.getRoot().getKey("/StructTreeRoot");
  if (root.isDictionary()) {
    walk.walk(root);
  }
  m_isSound = m_isSound && !walk.found().empty();
  if (m_isSound) {
    sort(walk.found(), pages.count());
  }
}

void StructureIndex::sort(const std::vector<Found>& found, int32_t pageCount) {
  m_firstItem.resize(static_cast<size_t>(pageCount) + 2);
  for (const Found& one : found) {
    ++m_firstItem[static_cast<size_t>(one.page) + 2];
  }
  for (size_t page = 2; page < m_firstItem.size(); ++page) {
    m_firstItem[page] += m_firstItem[page - 1];
  }
  m_items.resize(found.size());
  for (const Found& one : found) {
    m_items[m_firstItem[static_cast<size_t>(one.page) + 1]++] = one.item;
  }
}

const std::string* StructureIndex::name(uint32_t element) const {
  const auto found =
      std::lower_bound(m_names.begin(), m_names.end(), element,
                       [](const auto& name, uint32_t wanted) { return name.first < wanted; });
  return found != m_names.end() && found->first == element ? &found->second : nullptr;
}

std::span<const StructureIndex::Item> StructureIndex::onPage(int32_t page) const {
  const size_t first = m_firstItem[static_cast<size_t>(page)];
  return std::span(m_items).subspan(first, m_firstItem[static_cast<size_t>(page) + 1] - first);
}

} // namespace cleftor
