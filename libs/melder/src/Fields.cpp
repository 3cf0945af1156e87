#include "Joining.h"

#include <set>

namespace melder {

namespace {

/// Fonts of the form serve editing; a field whose font is one too many is edited in the form's own.
constexpr size_t mostFonts = 256;

using NewNames = std::map<std::string, std::string>;

std::vector<QPDFObjectHandle> dictionariesIn(QPDFObjectHandle list) {
  std::vector<QPDFObjectHandle> found = pages::itemsOf(list);
  std::erase_if(found, [](QPDFObjectHandle& item) { return !item.isDictionary(); });
  return found;
}

std::string nameOf(QPDFObjectHandle field) {
  QPDFObjectHandle name = field.getKey("/T");
  return name.isString() ? name.getUTF8Value() : std::string();
}

/// A default appearance ("/Helv 12 Tf 0 g") with its fonts renamed.
std::string withFonts(const std::string& appearance, const NewNames& fonts) {
  constexpr std::string_view delimiters = " \t\r\n\f/()<>[]{}%";
  std::string result;
  for (size_t at = 0; at < appearance.size();) {
    if (appearance[at] != '/') {
      result += appearance[at++];
      continue;
    }
    const size_t end = std::min(appearance.find_first_of(delimiters, at + 1), appearance.size());
    const std::string name = appearance.substr(at, end - at);
    const auto renamed = fonts.find(name);
    result += renamed == fonts.end() ? name : renamed->second;
    at = end;
  }
  return result;
}

/// Makes fields independent of the part's form.
void detach(std::vector<QPDFObjectHandle> fields, QPDFObjectHandle form, const NewNames& fonts) {
  for (QPDFObjectHandle& field : fields) {
    for (const char* key : {"/DA", "/Q"}) {
      if (form.hasKey(key) && !field.hasKey(key)) {
        field.replaceKey(key, form.getKey(key).unsafeShallowCopy());
      }
    }
  }
  pages::ObjGenSet seen;
  while (!fields.empty()) {
    QPDFObjectHandle field = fields.back();
    fields.pop_back();
    if (field.isIndirect() && !seen.insert(field.getObjGen()).second) {
      continue;
    }
    QPDFObjectHandle appearance = field.getKey("/DA");
    if (appearance.isString()) {
      field.replaceKey("/DA",
                       QPDFObjectHandle::newString(withFonts(appearance.getStringValue(), fonts)));
    }
    if (field.getKey("/FT").isNameAndEquals("/Sig")) {
      field.removeKey("/V");
    }
    for (const QPDFObjectHandle& kid : dictionariesIn(field.getKey("/Kids"))) {
      fields.push_back(kid);
    }
  }
}

/// Takes the part's fonts for editing in; returns those that had to get another name.
NewNames joinFonts(QPDFObjectHandle form, QPDFObjectHandle partResources, Transplant& transplant) {
  NewNames renamed;
  QPDFObjectHandle partFonts = pages::entryOf(partResources, "/Font");
  if (!partFonts.isDictionary()) {
    return renamed;
  }
  QPDFObjectHandle fonts = dictionaryBelow(dictionaryBelow(form, "/DR"), "/Font");
  for (const auto& [key, font] : partFonts.getDictAsMap()) {
    QPDFObjectHandle mine = transplant.value(font);
    const std::string text = mine.unparse();
    std::string name = key;
    for (int again = 1; fonts.hasKey(name) && fonts.getKey(name).unparse() != text; ++again) {
      name = key + '-' + std::to_string(again);
    }
    if (!fonts.hasKey(name)) {
      if (fonts.getKeys().size() >= mostFonts) {
        break;
      }
      fonts.replaceKey(name, mine);
    }
    if (name != key) {
      renamed[key] = name;
    }
  }
  return renamed;
}

} // namespace

void joinFields(Joining& joining) {
  Transplant& transplant = joining.transplant;
  QPDFObjectHandle partForm = joining.part.catalog().getKey("/AcroForm");
  const auto tops = dictionariesIn(pages::entryOf(partForm, "/Fields"));
  if (tops.empty()) {
    return;
  }
  QPDFObjectHandle form = dictionaryBelow(joining.receiver.catalog(), "/AcroForm");
  detach(tops, partForm, joinFonts(form, partForm.getKey("/DR"), transplant));
  QPDFObjectHandle fields = arrayBelow(form, "/Fields");
  std::set<std::string> names;
  for (const QPDFObjectHandle& field : dictionariesIn(fields)) {
    names.insert(nameOf(field));
  }
  for (QPDFObjectHandle field : tops) {
    const std::string wanted = nameOf(field);
    std::string name = wanted;
    for (int again = 1; !wanted.empty() && !names.insert(name).second; ++again) {
      name = wanted + '+' + std::to_string(again);
    }
    if (name != wanted) {
      field.replaceKey("/T", QPDFObjectHandle::newUnicodeString(name));
    }
    field.removeKey("/Parent");
    fields.appendItem(transplant.value(field));
  }
  QPDFObjectHandle redraw = partForm.getKey("/NeedAppearances");
  if (redraw.isBool() && redraw.getBoolValue()) {
    form.replaceKey("/NeedAppearances", QPDFObjectHandle::newBool(true));
  }
}

} // namespace melder
