#include "RangeBuilder.h"

#include "CatalogBuilder.h"

#include <array>
#include <utility>

namespace cleftor {

namespace {

/// Entries that a page takes from the nodes above it.
constexpr std::array inheritable = {"/MediaBox", "/CropBox", "/Rotate"};

/// Entries of a page that lead into the document beyond it: the tree of pages, articles, parts; and
/// those that are written by rules of their own.
constexpr std::array setAside = {"/Parent", "/B",         "/DPart",  "/Annots",
                                 "/AA",     "/Resources", "/Rotate", "/StructParent"};

} // namespace

RangeBuilder::RangeBuilder(Source& source, std::vector<pages::PageRange> ranges,
                           const RangeSettings& settings, common::AsideFile& file)
    : m_source(source), m_ranges(std::move(ranges)), m_settings(settings),
      m_writer(file, source.version(), source.deflater()), m_copier(source, m_writer),
      m_links(source, m_copier), m_form(source, m_copier, m_links),
      m_structure(source, m_copier, m_writer) {
  for (const pages::PageRange& range : m_ranges) {
    for (int32_t page = range.first; page <= range.last; ++page) {
      m_pages.push_back(page);
    }
  }
}

void RangeBuilder::write() {
  const int catalog = m_writer.reserve();
  m_treeNumber = m_writer.reserve();
  placePages();
  writePages();
  if (!m_form.isEmpty()) {
    m_form.writeFields();
  }
  CatalogBuilder document(m_source, m_copier, m_links, m_form, m_structure, m_writer, m_ranges);
  const int info = document.writeInfo();
  document.writeCatalog(catalog, m_treeNumber, m_settings.keepBookmarks);
  m_writer.finish(catalog, info, document.identifier());
}

/// Every page and annotation has its number before one is written: links lead backward and forward.
void RangeBuilder::placePages() {
  for (const int32_t page : m_pages) {
    const QPDFObjGen object = m_source.pages().object(page);
    // A page that is listed twice is two pages.
    m_structure.addPage(page);
    m_pageNumbers.push_back(m_copier.isPlaced(object) ? m_writer.reserve()
                                                      : m_copier.place(object));
  }
  for (const int32_t page : m_pages) {
    placeAnnotations(page);
  }
}

void RangeBuilder::placeAnnotations(int32_t page) {
  QPDFObjectHandle dictionary = m_source.page(page);
  QPDFObjectHandle annotations = dictionary.getKey("/Annots");
  const int count = annotations.isArray() ? annotations.getArrayNItems() : 0;
  for (int i = 0; i < count; ++i) {
    QPDFObjectHandle annotation = annotations.getArrayItem(i);
    if (!annotation.isIndirect() || !annotation.isDictionary()) {
      continue;
    }
    m_copier.place(annotation.getObjGen());
    if (annotation.getKey("/Subtype").isNameAndEquals("/Widget")) {
      m_form.addWidget(annotation);
    }
  }
}

void RangeBuilder::writePages() {
  Fragment tree;
  tree.text("<</Type/Pages/Count ");
  tree.integer(static_cast<long long>(m_pageNumbers.size()));
  tree.text("/Kids[");
  for (const int number : m_pageNumbers) {
    tree.number(number);
  }
  tree.text("]>>");
  m_copier.write(m_treeNumber, tree);
  for (size_t i = 0; i < m_pages.size(); ++i) {
    writePage(m_pages[i], m_pageNumbers[i]);
    // Page by page, so that what a page is made of lies together and little is waiting.
    m_copier.copyWaiting();
  }
}

void RangeBuilder::writePage(int32_t page, int number) {
  QPDFObjectHandle dictionary = m_source.page(page);
  QPDFObjectHandle annotations = dictionary.getKey("/Annots");
  m_copier.write(number, pageBody(page, dictionary));
  if (annotations.isArray()) {
    writeAnnotations(annotations);
  }
}

Fragment RangeBuilder::pageBody(int32_t page, QPDFObjectHandle dictionary) {
  Entries entries = dictionary.getDictAsMap();
  addInherited(page, entries);
  Fragment out;
  out.text("<</Type/Page/Parent ");
  out.number(m_treeNumber);
  writeResources(out, page, entries);
  writeRotation(out, entries);
  if (const auto annotations = entries.find("/Annots"); annotations != entries.end()) {
    writeAnnotationList(out, annotations->second);
  }
  if (const auto events = entries.find("/AA"); events != entries.end()) {
    m_links.writeEventActions(out, "/AA", events->second);
  }
  entries.erase("/Type");
  if (!m_structure.keepsKeys()) {
    entries.erase("/StructParents");
  }
  for (const char* key : setAside) {
    entries.erase(key);
  }
  out.entries(entries);
  out.text(">>");
  return out;
}

void RangeBuilder::addInherited(int32_t page, Entries& entries) {
  for (const char* key : inheritable) {
    const auto found = entries.find(key);
    if (found == entries.end() || found->second.isNull()) {
      entries[key] = m_source.inherited(page, key);
    }
  }
}

void RangeBuilder::writeResources(Fragment& out, int32_t page, Entries& entries) {
  const auto own = entries.find("/Resources");
  const bool isInherited = own == entries.end() || own->second.isNull();
  QPDFObjectHandle resources = isInherited ? m_source.inherited(page, "/Resources") : own->second;
  const bool isShared = isInherited || m_source.pages().isSharedResource(resources.getObjGen());
  const auto of = [&entries](const char* key) {
    const auto found = entries.find(key);
    return found == entries.end() ? QPDFObjectHandle::newNull() : found->second;
  };
  out.text("/Resources");
  if (const auto pruned =
          m_source.resources().forPage(resources, isShared, of("/Contents"), of("/Annots"))) {
    out.append(*pruned);
  } else if (resources.isDictionary()) {
    out.value(resources);
  } else {
    out.text("<<>>");
  }
}

void RangeBuilder::writeRotation(Fragment& out, Entries& entries) {
  QPDFObjectHandle rotation = entries["/Rotate"];
  const long long turned = rotation.isInteger() ? rotation.getIntValue() % 360 : 0;
  const long long degrees = (turned + 360) % 360;
  if (degrees != 0) {
    out.text("/Rotate ");
    out.integer(degrees);
  }
}

void RangeBuilder::writeAnnotationList(Fragment& out, QPDFObjectHandle annotations) {
  const int count = annotations.isArray() ? annotations.getArrayNItems() : 0;
  if (count == 0) {
    return;
  }
  out.text("/Annots[");
  for (int i = 0; i < count; ++i) {
    QPDFObjectHandle annotation = annotations.getArrayItem(i);
    if (!annotation.isDictionary()) {
      continue;
    }
    if (annotation.isIndirect()) {
      out.reference(annotation.getObjGen());
    } else {
      out.append(annotationBody(annotation));
    }
  }
  out.text("]");
}

void RangeBuilder::writeAnnotations(QPDFObjectHandle annotations) {
  const int count = annotations.getArrayNItems();
  for (int i = 0; i < count; ++i) {
    QPDFObjectHandle annotation = annotations.getArrayItem(i);
    if (annotation.isIndirect() && annotation.isDictionary() &&
        m_annotationsWritten.insert(annotation.getObjGen()).second) {
      m_copier.write(m_copier.place(annotation.getObjGen()), annotationBody(annotation));
    }
  }
}

/// An annotation answers to others and to its page only as far as these are in the range.
void RangeBuilder::dropStrayRelations(Entries& entries) const {
  if (!m_structure.keepsKeys()) {
    entries.erase("/StructParent");
  }
  for (const char* key : {"/P", "/Parent", "/Popup", "/IRT"}) {
    const auto found = entries.find(key);
    if (found != entries.end() && !m_copier.isPlaced(found->second.getObjGen())) {
      entries.erase(found);
    }
  }
  if (entries.count("/IRT") == 0) {
    entries.erase("/RT");
  }
}

Fragment RangeBuilder::annotationBody(QPDFObjectHandle annotation) {
  Entries entries = annotation.getDictAsMap();
  Fragment out;
  out.text("<<");
  m_form.writeFieldEntries(out, annotation, entries);
  dropStrayRelations(entries);
  if (const auto target = entries.find("/Dest"); target != entries.end()) {
    m_links.writeDestination(out, "/Dest", target->second);
    entries.erase(target);
  }
  for (const char* key : {"/A", "/PA"}) {
    if (const auto action = entries.find(key); action != entries.end()) {
      m_links.writeAction(out, key, action->second);
      entries.erase(action);
    }
  }
  if (const auto events = entries.find("/AA"); events != entries.end()) {
    m_links.writeEventActions(out, "/AA", events->second);
    entries.erase(events);
  }
  out.entries(entries);
  out.text(">>");
  return out;
}

} // namespace cleftor
