#include "CatalogBuilder.h"

#include "OutlineBuilder.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace cleftor {

namespace {

constexpr std::array plainEntries = {"/Version",    "/Extensions",    "/Lang",
                                     "/PageLayout", "/OutputIntents", "/URI"};

/// PDF 1.4, to which part 1 of ISO 19005 holds, has no longer arrays; a tree's come in pairs.
constexpr size_t mostPairs = 8191 / 2;

/// A hash that is stable from run to run and system to system.
uint64_t hashOf(const std::string& text, uint64_t seed) {
  uint64_t hash = 0xCBF29CE484222325ULL ^ seed;
  for (const char ch : text) {
    hash = (hash ^ static_cast<unsigned char>(ch)) * 0x100000001B3ULL;
  }
  // The last characters differ between ranges; spread them over all bits.
  hash ^= hash >> 31;
  hash *= 0xBF58476D1CE4E5B9ULL;
  return hash ^ (hash >> 29);
}

void appendBytes(std::string& out, uint64_t value) {
  for (int shift = 56; shift >= 0; shift -= 8) {
    out.push_back(static_cast<char>((value >> shift) & 0xFF));
  }
}

} // namespace

int CatalogBuilder::writeInfo() {
  QPDFObjectHandle info = m_source.trailer().getKey("/Info");
  if (!info.isDictionary() || info.getKeys().empty()) {
    return 0;
  }
  if (info.isIndirect()) {
    return m_copier.numberOf(info.getObjGen());
  }
  const int number = m_writer.reserve();
  Fragment out;
  out.resolved(info);
  m_copier.write(number, out);
  return number;
}

std::string CatalogBuilder::identifier() {
  QPDFObjectHandle id = m_source.trailer().getKey("/ID");
  std::string text = m_source.path();
  if (id.isArray() && id.getArrayNItems() > 0 && id.getArrayItem(0).isString()) {
    text = id.getArrayItem(0).getStringValue();
  }
  text += ' ' + std::to_string(m_source.pageCount());
  for (const auto& [first, last] : m_ranges) {
    text += ' ' + std::to_string(first) + ' ' + std::to_string(last);
  }
  text += " 0"; // an output has the bytes that it always had
  std::string bytes;
  appendBytes(bytes, hashOf(text, 0));
  appendBytes(bytes, hashOf(text, 0x9E3779B97F4A7C15ULL));
  return bytes;
}

void CatalogBuilder::writeCatalog(int number, int pageTree, bool keepBookmarks) {
  Fragment out;
  out.text("<</Type/Catalog/Pages ");
  out.number(pageTree);
  out.entries(m_source.catalog(), plainEntries);
  addMetadata(out, addStructure(out));
  addViewerPreferences(out);
  addLabels(out);
  const int outline =
      keepBookmarks ? writeOutline(m_source, m_copier, m_links, m_writer, m_ranges) : 0;
  if (outline != 0) {
    out.text("/Outlines ");
    out.number(outline);
  }
  addPageMode(out, outline != 0);
  addOpenAction(out);
  addNames(out);
  addForm(out);
  // Which layers are used shows only when all the rest is copied.
  m_copier.request(out);
  m_copier.copyWaiting();
  if (!m_copier.usedLayers().empty()) {
    out.text("/OCProperties");
    out.append(m_source.layers().reducedTo(m_copier.usedLayers()));
  }
  out.text(">>");
  m_copier.write(number, out);
  m_copier.copyWaiting();
}

bool CatalogBuilder::hasLongArrays() const {
  int64_t pages = 0;
  for (const auto& [first, last] : m_ranges) {
    pages += last - first + 1;
  }
  return std::max({static_cast<size_t>(pages), m_source.names().within(m_ranges).size(),
                   m_structure.mostPairs()}) > mostPairs;
}

bool CatalogBuilder::isWholeSource() const {
  int32_t next = 0;
  for (const auto& [first, last] : m_ranges) {
    if (first != next) {
      return false;
    }
    next = last + 1;
  }
  return next == m_source.pageCount();
}

bool CatalogBuilder::addStructure(Fragment& out) {
  const int root = m_structure.write();
  if (root == 0) {
    return false;
  }
  out.text("/StructTreeRoot ");
  out.number(root);
  out.entries(m_source.catalog(), std::array{"/MarkInfo"});
  return true;
}

/// What the source says of itself, but for what its pages alone do not keep.
void CatalogBuilder::addMetadata(Fragment& out, bool isTagged) {
  QPDFObjectHandle metadata = m_source.catalog().getKey("/Metadata");
  if (metadata.isNull()) {
    return;
  }
  pages::Claims claims = m_source.claims();
  if (!isTagged) {
    claims.dropTagged();
  }
  if (!isTagged || !isWholeSource()) {
    claims.dropAccessible();
  }
  claims.dropBeyondPages();
  if (claims.archivalPart() == "1" && hasLongArrays()) {
    claims.dropArchival();
  }
  if (!claims.isChanged()) {
    out.entry("/Metadata", metadata);
  } else if (!claims.text().empty()) {
    const int number = m_writer.reserve();
    m_writer.stream(number, "/Type/Metadata/Subtype/XML", claims.text());
    out.text("/Metadata ");
    out.number(number);
  }
}

void CatalogBuilder::addLabels(Fragment& out) {
  const auto sections = m_source.labels().within(m_ranges);
  if (sections.empty()) {
    return;
  }
  out.text("/PageLabels<</Nums[");
  for (const auto& [page, label] : sections) {
    out.integer(page);
    out.value(label);
  }
  out.text("]>>");
}

void CatalogBuilder::addViewerPreferences(Fragment& out) {
  QPDFObjectHandle preferences = m_source.catalog().getKey("/ViewerPreferences");
  if (!preferences.isDictionary()) {
    return;
  }
  auto entries = preferences.getDictAsMap();
  // Counts pages of the source.
  entries.erase("/PrintPageRange");
  out.text("/ViewerPreferences<<");
  out.entries(entries);
  out.text(">>");
}

void CatalogBuilder::addPageMode(Fragment& out, bool hasOutline) {
  QPDFObjectHandle mode = m_source.catalog().getKey("/PageMode");
  const bool shows = mode.isNameAndEquals("/UseOutlines")
                         ? hasOutline
                         : mode.isName() && mode.getName() != "/UseAttachments";
  if (shows) {
    out.entry("/PageMode", mode);
  }
}

/// Where a document opens is kept; what it runs when it opens is not.
void CatalogBuilder::addOpenAction(Fragment& out) {
  QPDFObjectHandle opening = m_source.catalog().getKey("/OpenAction");
  if (opening.isArray()) {
    m_links.writeDestination(out, "/OpenAction", opening);
  } else if (opening.isDictionary() && opening.getKey("/S").isNameAndEquals("/GoTo")) {
    m_links.writeDestination(out, "/OpenAction", opening.getKey("/D"));
  }
}

void CatalogBuilder::addNames(Fragment& out) {
  Fragment older;
  Fragment names;
  for (const auto* destination : m_source.names().within(m_ranges)) {
    if (destination->isNameObject) {
      m_links.writeDestination(older,
                               QPDFObjectHandle::newName(destination->name).unparse().c_str(),
                               destination->value);
    } else {
      names.value(QPDFObjectHandle::newString(destination->name));
      m_links.writeDestination(names, "", destination->value);
    }
  }
  if (!older.bytes().empty()) {
    out.text("/Dests<<");
    out.append(older);
    out.text(">>");
  }
  QPDFObjectHandle all = m_source.catalog().getKey("/Names");
  const bool hasScripts = !m_form.isEmpty() && all.isDictionary() && all.hasKey("/JavaScript");
  if (names.bytes().empty() && !hasScripts) {
    return;
  }
  out.text("/Names<<");
  if (!names.bytes().empty()) {
    out.text("/Dests<</Names[");
    out.append(names);
    out.text("]>>");
  }
  if (hasScripts) {
    out.entry("/JavaScript", all.getKey("/JavaScript"));
  }
  out.text(">>");
}

void CatalogBuilder::addForm(Fragment& out) {
  if (m_form.isEmpty()) {
    return;
  }
  const int number = m_writer.reserve();
  m_copier.write(number, m_form.form());
  out.text("/AcroForm ");
  out.number(number);
}

} // namespace cleftor
