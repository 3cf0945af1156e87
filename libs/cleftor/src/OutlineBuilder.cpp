#include "OutlineBuilder.h"

#include <unordered_map>
#include <vector>

namespace cleftor {

namespace {

/** A bookmark of the output; relations are positions in the list of those kept, or none. */
struct Bookmark {
  static constexpr int none = -1;

  const OutlineIndex::Item* item = nullptr;
  int number = 0;
  int parent = none;
  int previous = none;
  int next = none;
  int first = none;
  int last = none;
  int visibleBelow = 0;
};

bool isOpen(const Bookmark& bookmark) {
  QPDFObjectHandle dictionary = bookmark.item->dictionary;
  QPDFObjectHandle count = dictionary.getKey("/Count");
  return count.isInteger() && count.getIntValue() > 0;
}

/** Links bookmarks as siblings; parents come before what is below them. */
void relate(std::vector<Bookmark>& list, Bookmark& root) {
  for (size_t i = 0; i < list.size(); ++i) {
    Bookmark& parent =
        list[i].parent == Bookmark::none ? root : list[static_cast<size_t>(list[i].parent)];
    list[i].previous = parent.last;
    if (parent.last == Bookmark::none) {
      parent.first = static_cast<int>(i);
    } else {
      list[static_cast<size_t>(parent.last)].next = static_cast<int>(i);
    }
    parent.last = static_cast<int>(i);
  }
  for (size_t i = list.size(); i > 0; --i) {
    Bookmark& below = list[i - 1];
    Bookmark& parent =
        below.parent == Bookmark::none ? root : list[static_cast<size_t>(below.parent)];
    parent.visibleBelow += 1 + (isOpen(below) ? below.visibleBelow : 0);
  }
}

class Writer {
public:
  Writer(ObjectCopier& copier, LinkRules& links, std::vector<Bookmark>& list, const Bookmark& root)
      : m_copier(copier), m_links(links), m_list(list), m_root(root) {}

  void writeAll() {
    Fragment out;
    out.text("<</Type/Outlines");
    relation(out, "/First", m_root.first);
    relation(out, "/Last", m_root.last);
    out.text("/Count ");
    out.integer(m_root.visibleBelow);
    out.text(">>");
    m_copier.write(m_root.number, out);
    for (const Bookmark& bookmark : m_list) {
      write(bookmark);
    }
  }

private:
  void relation(Fragment& out, const char* key, int position) {
    if (position != Bookmark::none) {
      out.text(key);
      out.separate();
      out.number(m_list[static_cast<size_t>(position)].number);
    }
  }

  void write(const Bookmark& bookmark) {
    QPDFObjectHandle source = bookmark.item->dictionary;
    Fragment out;
    out.text("<<");
    for (const char* key : {"/Title", "/C", "/F"}) {
      if (QPDFObjectHandle value = source.getKey(key); !value.isNull()) {
        out.entry(key, value);
      }
    }
    out.text("/Parent ");
    out.number(bookmark.parent == Bookmark::none
                   ? m_root.number
                   : m_list[static_cast<size_t>(bookmark.parent)].number);
    relation(out, "/Prev", bookmark.previous);
    relation(out, "/Next", bookmark.next);
    relation(out, "/First", bookmark.first);
    relation(out, "/Last", bookmark.last);
    if (bookmark.visibleBelow != 0) {
      out.text("/Count ");
      out.integer(isOpen(bookmark) ? bookmark.visibleBelow : -bookmark.visibleBelow);
    }
    if (QPDFObjectHandle target = source.getKey("/Dest"); !target.isNull()) {
      m_links.writeDestination(out, "/Dest", target);
    } else if (QPDFObjectHandle action = source.getKey("/A"); !action.isNull()) {
      m_links.writeAction(out, "/A", action);
    }
    out.text(">>");
    m_copier.write(bookmark.number, out);
  }

  ObjectCopier& m_copier;
  LinkRules& m_links;
  std::vector<Bookmark>& m_list;
  const Bookmark& m_root;
};

} // namespace

int writeOutline(Source& source, ObjectCopier& copier, LinkRules& links, DocumentWriter& writer,
                 const std::vector<PageRange>& ranges) {
  const std::vector<int32_t> positions = source.outline().within(ranges);
  if (positions.empty()) {
    return 0;
  }
  Bookmark root;
  root.number = writer.reserve();
  std::vector<Bookmark> list;
  std::unordered_map<int32_t, int> places;
  for (const int32_t position : positions) {
    Bookmark bookmark;
    bookmark.item = &source.outline().item(position);
    bookmark.number = writer.reserve();
    if (bookmark.item->parent != OutlineIndex::none) {
      bookmark.parent = places.at(bookmark.item->parent);
    }
    places.emplace(position, static_cast<int>(list.size()));
    list.push_back(bookmark);
  }
  relate(list, root);
  Writer(copier, links, list, root).writeAll();
  return root.number;
}

} // namespace cleftor
