#include "Outline.h"

#include "common/Utf16.h"

#include <unordered_set>

namespace glyphrun {

namespace {

constexpr std::size_t mostEntries = 1'000'000;
constexpr std::size_t deepestBookmark = 256;
constexpr int mostReferences = 8;

std::u16string titleOf(const PdfFile& file, const PdfObject& item) {
  const PdfObject title = item.get("Title");
  char* utf8 = nullptr;
  fz_context* ctx = file.mu().raw();
  file.mu().attempt([&] {
    if (pdf_is_string(ctx, title.raw())) {
      utf8 = pdf_new_utf8_from_pdf_string_obj(ctx, title.raw());
    }
  });
  std::u16string text = utf8 == nullptr ? std::u16string() : common::toUtf16(utf8);
  fz_free(ctx, utf8);
  return text;
}

std::int32_t pageOf(PdfFile& file, const PdfObject& item) {
  PdfObject destination = item.get("Dest");
  if (!destination) {
    const PdfObject action = item.get("A");
    if (action.get("S").isNamed("GoTo")) {
      destination = action.get("D");
    }
  }
  // A name leads to a destination, or to a dictionary that holds one.
  for (int i = 0; i < mostReferences && destination && !destination.isArray(); ++i) {
    if (destination.isName() || destination.isString()) {
      pdf_obj* found = nullptr;
      file.mu().attempt(
          [&] { found = pdf_lookup_dest(file.mu().raw(), file.document(), destination.raw()); });
      destination = found == nullptr ? PdfObject() : PdfObject(file.mu(), found);
    } else {
      destination = destination.get("D");
    }
  }
  const PdfObject target = destination.at(0);
  if (target.isInteger()) {
    const int index = target.integer();
    return index >= 0 && index < file.pageCount() ? index + 1 : 0;
  }
  return file.pageWithNumber(target.objectNumber()) + 1;
}

} // namespace

std::vector<OutlineEntry> readOutline(PdfFile& file) {
  std::vector<OutlineEntry> entries;
  std::unordered_set<int> seen;
  std::vector<PdfObject> levels;
  levels.push_back(file.catalog().get("Outlines").get("First"));
  while (!levels.empty() && entries.size() < mostEntries) {
    const PdfObject item = levels.back();
    const int number = item.objectNumber();
    if (!item.isDict() || (number != 0 && !seen.insert(number).second)) {
      levels.pop_back();
      continue;
    }
    entries.push_back(
        {titleOf(file, item), static_cast<std::int32_t>(levels.size() - 1), pageOf(file, item)});
    // An item without a number could be met again unseen, so nothing is followed from it but
    // onwards.
    levels.back() = item.get("Next");
    const PdfObject first = item.get("First");
    if (first && levels.size() < deepestBookmark) {
      levels.push_back(first);
    }
  }
  return entries;
}

} // namespace glyphrun
