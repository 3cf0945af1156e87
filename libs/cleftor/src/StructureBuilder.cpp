#include "StructureBuilder.h"

#include "pages/Entries.h"

#include <array>
#include <limits>

namespace cleftor {

namespace {

/// Identifiers on a page follow each other nearly; what leaves long gaps is made to fill the disk.
constexpr long long mostGaps = 4096;

/// A key that nothing has.
constexpr long long none = -1;

/// An identifier that no content has: the key alone leads to the element.
constexpr long long alone = -1;

/// The key of a page, stream or annotation into the tree, or `none`.
long long keyOf(QPDFObjectHandle owner, const char* entry) {
  QPDFObjectHandle key = pages::entryOf(owner, entry);
  const long long value = key.isInteger() ? key.getIntValue() : none;
  return value >= 0 && value < std::numeric_limits<int32_t>::max() ? value : none;
}

} // namespace

void StructureBuilder::addPage(int32_t page) {
  m_isPossible = m_isPossible && m_source.structure() != nullptr &&
                 m_source.pages().indexOf(m_source.pages().object(page)) == page &&
                 m_added.insert(page).second;
  if (m_isPossible) {
    m_pages.push_back(page);
  }
}

int StructureBuilder::write() {
  if (!keepsKeys()) {
    return 0;
  }
  const std::vector<Kid> kids = gather();
  if (m_kept.empty()) {
    return 0;
  }
  m_root = m_writer.reserve();
  for (size_t i = 0; i < m_kept.size(); ++i) {
    m_numbers.push_back(m_writer.reserve());
  }
  m_isComplete.resize(m_kept.size());
  // Backward: whether an element is complete depends on those below it.
  Kids left(kids);
  const auto takeThoseOf = [&left](uint32_t owner) {
    size_t first = left.size();
    while (first > 0 && left[first - 1].owner == owner) {
      --first;
    }
    const Kids own = left.subspan(first);
    left = left.first(first);
    return own;
  };
  const Kids top = takeThoseOf(Index::none);
  for (size_t slot = m_kept.size(); slot-- > 0;) {
    writeElement(slot, takeThoseOf(m_kept[slot]));
  }
  writeRoot(top);
  m_copier.copyWaiting();
  return m_root;
}

/// Finds the elements to be kept: those on the pages and those above them. What /K of each keeps,
/// ordered by owner and place.
std::vector<StructureBuilder::Kid> StructureBuilder::gather() {
  const Index& index = *m_source.structure();
  std::vector<Kid> kids;
  for (size_t place = 0; place < m_pages.size(); ++place) {
    m_pageKeys.push_back(keyOf(m_source.page(m_pages[place]), "/StructParents"));
    for (const Index::Item& item : index.onPage(m_pages[place])) {
      m_kept.push_back(item.element);
      if (item.rank != Index::none) {
        kids.push_back({item.element, item.rank, Index::none, place, &item});
      }
    }
  }
  const auto tidy = [this] {
    std::sort(m_kept.begin(), m_kept.end());
    m_kept.erase(std::unique(m_kept.begin(), m_kept.end()), m_kept.end());
  };
  tidy();
  std::unordered_set<uint32_t> known(m_kept.begin(), m_kept.end());
  for (size_t i = 0; i < m_kept.size(); ++i) { // grows by what is above
    const Index::Element& element = index.element(m_kept[i]);
    kids.push_back({element.parent, element.rank, m_kept[i], 0, nullptr});
    if (element.parent != Index::none && known.insert(element.parent).second) {
      m_kept.push_back(element.parent);
    }
  }
  tidy();
  std::sort(kids.begin(), kids.end(), [](const Kid& left, const Kid& right) {
    return std::pair(left.owner, left.rank) < std::pair(right.owner, right.rank);
  });
  return kids;
}

size_t StructureBuilder::slotOf(uint32_t element) const {
  return static_cast<size_t>(std::lower_bound(m_kept.begin(), m_kept.end(), element) -
                             m_kept.begin());
}

void StructureBuilder::writeElement(size_t slot, Kids kids) {
  const Index& index = *m_source.structure();
  const Index::Element& element = index.element(m_kept[slot]);
  Fragment out;
  out.text("<</Type/StructElem/P ");
  out.number(element.parent == Index::none ? m_root : m_numbers[slotOf(element.parent)]);
  m_isComplete[slot] = element.kids == kids.size();
  writeKids(out, slot, kids);
  out.append(index.text(element.entries));
  if (m_isComplete[slot]) {
    out.append(index.text(element.attributes));
    out.append(index.text(element.said));
  }
  out.text(">>");
  if (const std::string* const name = index.name(m_kept[slot])) {
    m_names.emplace_back(*name, m_numbers[slot]);
  }
  m_copier.write(m_numbers[slot], out);
}

void StructureBuilder::writeKids(Fragment& out, size_t slot, Kids kids) {
  const auto content = std::find_if(kids.begin(), kids.end(),
                                    [](const Kid& kid) { return kid.element == Index::none; });
  if (content != kids.end()) {
    out.text("/Pg");
    out.reference(pageAt(content->place));
  }
  Fragment list;
  for (const Kid& kid : kids) {
    bool isWhole = true;
    if (kid.element == Index::none) {
      isWhole = writeContent(list, m_numbers[slot], kid, kid.place == content->place);
    } else {
      const size_t below = slotOf(kid.element);
      list.number(m_numbers[below]);
      isWhole = m_isComplete[below];
    }
    m_isComplete[slot] = m_isComplete[slot] && isWhole;
  }
  if (!list.bytes().empty()) {
    out.text("/K[");
    out.append(list);
    out.text("]");
  }
}

/// Content of a stream, and an object, are kept when the pages brought them; false when they are
/// not.
bool StructureBuilder::writeContent(Fragment& out, int number, const Kid& kid, bool isOnSamePage) {
  const Index::Item& item = *kid.item;
  const bool isMarked = item.mark != Index::Item::none;
  const bool isOfPage = item.object == Index::none;
  const QPDFObjGen object = isOfPage ? QPDFObjGen() : m_source.structure()->object(item.object);
  if (!isOfPage && !m_copier.isPlaced(object)) {
    return false;
  }
  const long long key =
      isOfPage ? m_pageKeys[kid.place]
               : keyOf(m_source.object(object), isMarked ? "/StructParents" : "/StructParent");
  if (key != none) {
    m_parents.push_back({key, isMarked ? item.mark : alone, number});
  }
  if (isOfPage && isOnSamePage) {
    out.integer(item.mark);
    return true;
  }
  out.text(isMarked ? "<</Type/MCR/Pg" : "<</Type/OBJR/Pg");
  out.reference(pageAt(kid.place));
  if (isMarked) {
    out.text("/MCID");
    out.integer(item.mark);
  }
  if (!isOfPage) {
    out.text(isMarked ? "/Stm" : "/Obj");
    out.reference(object);
  }
  out.text(">>");
  return true;
}

void StructureBuilder::writeRoot(Kids kids) {
  QPDFObjectHandle source = m_source.catalog().getKey("/StructTreeRoot");
  Fragment out;
  out.text("<</Type/StructTreeRoot/K[");
  for (const Kid& kid : kids) {
    out.number(m_numbers[slotOf(kid.element)]);
  }
  out.text("]");
  out.entries(source, std::array{"/RoleMap", "/ClassMap", "/Namespaces"});
  writeParents(out);
  writeNames(out);
  out.text(">>");
  m_copier.write(m_root, out);
}

void StructureBuilder::writeParents(Fragment& out) {
  std::sort(m_parents.begin(), m_parents.end(), [](const Parent& left, const Parent& right) {
    return std::pair(left.key, left.mark) < std::pair(right.key, right.mark);
  });
  out.text("/ParentTree<</Nums[");
  for (size_t i = 0; i < m_parents.size(); ++m_keyCount) {
    const long long key = m_parents[i].key;
    out.integer(key);
    size_t end = i;
    while (end < m_parents.size() && m_parents[end].key == key) {
      ++end;
    }
    if (m_parents[i].mark == alone) {
      out.number(m_parents[i].number);
    } else {
      writeMarks(out, std::span(m_parents).subspan(i, end - i));
    }
    i = end;
  }
  out.text("]>>/ParentTreeNextKey ");
  out.integer(m_parents.empty() ? 0 : m_parents.back().key + 1);
}

/// The elements of one key by identifier, from 0.
void StructureBuilder::writeMarks(Fragment& out, std::span<const Parent> parents) {
  out.text("[");
  long long next = 0;
  long long gaps = 0;
  for (const auto& [key, mark, number] : parents) {
    if (mark < next || mark - next > mostGaps - gaps) {
      continue; // there already, or too far away
    }
    gaps += mark - next;
    for (; next < mark; ++next) {
      out.separate();
      out.text("null");
    }
    out.number(number);
    ++next;
  }
  out.text("]");
}

void StructureBuilder::writeNames(Fragment& out) {
  if (m_names.empty()) {
    return;
  }
  std::sort(m_names.begin(), m_names.end());
  out.text("/IDTree<</Names[");
  for (const auto& [name, number] : m_names) {
    out.value(QPDFObjectHandle::newString(name));
    out.number(number);
  }
  out.text("]>>");
}

} // namespace cleftor
