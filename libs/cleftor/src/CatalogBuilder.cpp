#include "CatalogBuilder.h"

#include "OutlineBuilder.h"

#include <array>
#include <cstdint>

namespace cleftor {

namespace {

constexpr std::array plainEntries = {"/Version",  "/Extensions",    "/Lang", "/PageLayout",
                                     "/Metadata", "/OutputIntents", "/URI"};

/** A hash that is stable from run to run and system to system. */
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
  QPDFObjectHandle info = source_.trailer().getKey("/Info");
  if (!info.isDictionary() || info.getKeys().empty()) {
    return 0;
  }
  if (info.isIndirect()) {
    return copier_.numberOf(info.getObjGen());
  }
  const int number = writer_.reserve();
  Fragment out;
  out.resolved(info);
  copier_.write(number, out);
  return number;
}

std::string CatalogBuilder::identifier(int32_t rotation) {
  QPDFObjectHandle id = source_.trailer().getKey("/ID");
  std::string text = source_.path();
  if (id.isArray() && id.getArrayNItems() > 0 && id.getArrayItem(0).isString()) {
    text = id.getArrayItem(0).getStringValue();
  }
  text += ' ' + std::to_string(source_.pageCount()) + ' ' + std::to_string(range_.first) + ' ' +
          std::to_string(range_.last) + ' ' + std::to_string(rotation);
  std::string bytes;
  appendBytes(bytes, hashOf(text, 0));
  appendBytes(bytes, hashOf(text, 0x9E3779B97F4A7C15ULL));
  return bytes;
}

void CatalogBuilder::writeCatalog(int number, int pageTree, bool keepBookmarks) {
  Fragment out;
  out.text("<</Type/Catalog/Pages ");
  out.number(pageTree);
  addPlainEntries(out);
  addViewerPreferences(out);
  if (const auto labels = source_.labels().within(range_.first, range_.last)) {
    out.text("/PageLabels");
    out.append(*labels);
  }
  const int outline = keepBookmarks ? writeOutline(source_, copier_, links_, writer_, range_) : 0;
  if (outline != 0) {
    out.text("/Outlines ");
    out.number(outline);
  }
  addPageMode(out, outline != 0);
  addOpenAction(out);
  addNames(out);
  addForm(out);
  // Which layers are used shows only when all the rest is copied.
  copier_.request(out);
  copier_.copyWaiting();
  if (!copier_.usedLayers().empty()) {
    out.text("/OCProperties");
    out.append(source_.layers().reducedTo(copier_.usedLayers()));
  }
  out.text(">>");
  copier_.write(number, out);
  copier_.copyWaiting();
}

void CatalogBuilder::addPlainEntries(Fragment& out) {
  QPDFObjectHandle catalog = source_.catalog();
  for (const char* key : plainEntries) {
    if (QPDFObjectHandle value = catalog.getKey(key); !value.isNull()) {
      out.entry(key, value);
    }
  }
}

void CatalogBuilder::addViewerPreferences(Fragment& out) {
  QPDFObjectHandle preferences = source_.catalog().getKey("/ViewerPreferences");
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
  QPDFObjectHandle mode = source_.catalog().getKey("/PageMode");
  const bool shows = mode.isNameAndEquals("/UseOutlines")
                         ? hasOutline
                         : mode.isName() && mode.getName() != "/UseAttachments";
  if (shows) {
    out.entry("/PageMode", mode);
  }
}

/** Where a document opens is kept; what it runs when it opens is not. */
void CatalogBuilder::addOpenAction(Fragment& out) {
  QPDFObjectHandle opening = source_.catalog().getKey("/OpenAction");
  if (opening.isArray()) {
    links_.writeDestination(out, "/OpenAction", opening);
  } else if (opening.isDictionary() && opening.getKey("/S").isNameAndEquals("/GoTo")) {
    links_.writeDestination(out, "/OpenAction", opening.getKey("/D"));
  }
}

void CatalogBuilder::addNames(Fragment& out) {
  Fragment older;
  Fragment names;
  for (const auto* destination : source_.names().within(range_.first, range_.last)) {
    if (destination->isNameObject) {
      links_.writeDestination(older, QPDFObjectHandle::newName(destination->name).unparse().c_str(),
                              destination->value);
    } else {
      names.value(QPDFObjectHandle::newString(destination->name));
      links_.writeDestination(names, "", destination->value);
    }
  }
  if (!older.bytes().empty()) {
    out.text("/Dests<<");
    out.append(older);
    out.text(">>");
  }
  QPDFObjectHandle all = source_.catalog().getKey("/Names");
  const bool hasScripts = !form_.isEmpty() && all.isDictionary() && all.hasKey("/JavaScript");
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
  if (form_.isEmpty()) {
    return;
  }
  const int number = writer_.reserve();
  copier_.write(number, form_.form());
  out.text("/AcroForm ");
  out.number(number);
}

} // namespace cleftor
