#include "StructureIndex.h"

#include "StructureReader.h"
#include "pages/Entries.h"

#include <algorithm>
#include <optional>

namespace cleftor {

namespace {

/// Trees of office programs are some thirty levels deep.
constexpr size_t deepestElement = 500;
/// An element takes some 300 bytes while the tree is walked.
constexpr size_t mostElements = 4'000'000;

} // namespace

/// A place in the walk: which kid of which element comes next.
struct StructureIndex::Step {
  uint32_t element;
  std::vector<StructureKid> kids;
  std::optional<int32_t> page; ///< that the element names, for content that names none
  uint32_t next = 0;
  int32_t firstPage = -1; ///< with something on it so far; -1: nothing so far
  int32_t lastPage = -1;
};

class StructureIndex::Walk {
public:
  Walk(StructureIndex& index, QPDF& document, std::shared_ptr<InputSource> input,
       const pages::PageTable& pages)
      : m_index(index), m_document(document), m_pages(pages),
        m_reader(document, std::move(input), m_texts), m_noText(m_texts.add({})) {}

  const std::vector<Found>& found() const { return m_found; }
  std::vector<Fragment> texts() { return m_texts.take(); }

  void walk(QPDFObjectHandle root) {
    m_path.push_back({none, StructureReader::kidsOf(root.getKey("/K")), {}});
    while (m_index.m_isSound) {
      Step& step = m_path.back();
      if (step.next < step.kids.size()) {
        const uint32_t rank = step.next++;
        take(step, rank, step.kids[rank]);
      } else if (m_path.size() > 1) {
        leave();
      } else {
        return;
      }
    }
  }

private:
  using Kind = StructureKid::Kind;

  void take(Step& step, uint32_t rank, const StructureKid& kid) {
    switch (kid.kind) {
    case Kind::Element:
      enter(step, rank, kid.object);
      break;
    case Kind::Marked:
      if (kid.mark >= 0 && kid.mark <= std::numeric_limits<int32_t>::max()) {
        const uint32_t stream = kid.object.isIndirect() ? numberOf(kid.object) : none;
        addContent(step, pageOf(step, kid),
                   {step.element, rank, static_cast<int32_t>(kid.mark), stream});
      }
      break;
    case Kind::Object:
      addContent(step, pageOfObject(step, kid),
                 {step.element, rank, Item::none, numberOf(kid.object)});
      break;
    case Kind::Nameless: // cannot be what content refers to
      m_index.m_isSound = false;
      break;
    case Kind::Nothing:
      break;
    }
  }

  uint32_t numberOf(QPDFObjGen object) {
    m_index.m_objects.push_back(object);
    return static_cast<uint32_t>(m_index.m_objects.size() - 1);
  }

  std::optional<int32_t> pageOf(const Step& step, const StructureKid& kid) const {
    return kid.page ? m_pages.indexOf(*kid.page) : step.page;
  }

  std::optional<int32_t> pageOfObject(const Step& step, const StructureKid& kid) const {
    auto page = pageOf(step, kid);
    if (!page) {
      QPDFObjectHandle owner = pages::entryOf(m_document.getObject(kid.object), "/P");
      page = owner.isIndirect() ? m_pages.indexOf(owner.getObjGen()) : page;
    }
    return page;
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

  void enter(Step& step, uint32_t rank, QPDFObjGen number) {
    if (m_seen.count(number) != 0) {
      return;
    }
    StructureObject object = m_reader.read(number);
    if (!object.isElement) {
      take(step, rank, object.kid);
      return;
    }
    m_index.m_isSound = m_path.size() < deepestElement && size() < mostElements;
    m_seen.insert(number);
    if (object.name) {
      m_index.m_names.emplace_back(size(), std::move(*object.name));
    }
    m_index.m_elements.push_back({step.element, rank, static_cast<uint32_t>(object.kids.size()),
                                  object.entries, object.attributes, object.said});
    m_path.push_back({size() - 1, std::move(object.kids), m_pages.indexOf(object.page)});
  }

  void leave() {
    const Step done = std::move(m_path.back());
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
  pages::ObjGenSet m_seen; ///< elements
  StructureTexts m_texts;
  StructureReader m_reader;
  uint32_t m_noText;
};

StructureIndex::StructureIndex(QPDF& document, std::shared_ptr<InputSource> input,
                               const pages::PageTable& pages) {
  Walk walk(*this, document, std::move(input), pages);
  QPDFObjectHandle root = document.getRoot().getKey("/StructTreeRoot");
  if (root.isDictionary()) {
    walk.walk(root);
  }
  m_texts = walk.texts();
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
