#include "OutlineBuilder.h"

#include <array>
#include <vector>

namespace cleftor {

namespace {

using pages::Bookmark;

class Writer {
public:
  /// list and numbers: the outline, then the bookmarks.
  Writer(ObjectCopier& copier, LinkRules& links, const std::vector<Bookmark>& list,
         const std::vector<int>& numbers)
      : m_copier(copier), m_links(links), m_list(list), m_numbers(numbers) {}

  void writeAll() {
    const Bookmark& root = m_list.front();
    Fragment out;
    out.text("<</Type/Outlines");
    relation(out, "/First", root.first);
    relation(out, "/Last", root.last);
    out.text("/Count ");
    out.integer(root.visibleBelow);
    out.text(">>");
    m_copier.write(m_numbers.front(), out);
    for (size_t i = 1; i < m_list.size(); ++i) {
      write(m_list[i], m_numbers[i]);
    }
  }

private:
  void relation(Fragment& out, const char* key, int place) {
    if (place != Bookmark::none) {
      out.text(key);
      out.separate();
      out.number(m_numbers[static_cast<size_t>(place)]);
    }
  }

  void write(const Bookmark& bookmark, int number) {
    QPDFObjectHandle source = bookmark.item->dictionary;
    Fragment out;
    out.text("<<");
    out.entries(source, std::array{"/Title", "/C", "/F"});
    relation(out, "/Parent", bookmark.parent);
    relation(out, "/Prev", bookmark.previous);
    relation(out, "/Next", bookmark.next);
    relation(out, "/First", bookmark.first);
    relation(out, "/Last", bookmark.last);
    if (const int count = bookmark.count(); count != 0) {
      out.text("/Count ");
      out.integer(count);
    }
    if (QPDFObjectHandle target = source.getKey("/Dest"); !target.isNull()) {
      m_links.writeDestination(out, "/Dest", target);
    } else if (QPDFObjectHandle action = source.getKey("/A"); !action.isNull()) {
      m_links.writeAction(out, "/A", action);
    }
    out.text(">>");
    m_copier.write(number, out);
  }

  ObjectCopier& m_copier;
  LinkRules& m_links;
  const std::vector<Bookmark>& m_list;
  const std::vector<int>& m_numbers;
};

} // namespace

int writeOutline(Source& source, ObjectCopier& copier, LinkRules& links, DocumentWriter& writer,
                 const std::vector<pages::PageRange>& ranges) {
  const std::vector<int32_t> positions = source.outline().within(ranges);
  if (positions.empty()) {
    return 0;
  }
  const std::vector<Bookmark> list = pages::bookmarksAt(source.outline(), positions);
  std::vector<int> numbers;
  for (size_t i = 0; i < list.size(); ++i) {
    numbers.push_back(writer.reserve());
  }
  Writer(copier, links, list, numbers).writeAll();
  return numbers.front();
}

} // namespace cleftor
