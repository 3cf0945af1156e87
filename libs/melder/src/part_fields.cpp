#include "part_fields.h"

#include <set>

namespace melder {

namespace {

constexpr int kMostAncestors = 100;

QPDFObjectHandle formOf(Document& part) {
  return part.pdf.getRoot().getKey("/AcroForm");
}

QPDFObjectHandle topOf(QPDFObjectHandle field) {
  for (int i = 0; i < kMostAncestors; ++i) {
    QPDFObjectHandle parent = field.getKey("/Parent");
    if (!parent.isDictionary() || !parent.isIndirect()) {
      break;
    }
    field = parent;
  }
  return field;
}

std::vector<QPDFObjectHandle> annotationsOf(QPDFObjectHandle page) {
  std::vector<QPDFObjectHandle> found;
  QPDFObjectHandle list = page.getKey("/Annots");
  for (int i = 0; list.isArray() && i < list.getArrayNItems(); ++i) {
    if (list.getArrayItem(i).isDictionary()) {
      found.push_back(list.getArrayItem(i));
    }
  }
  return found;
}

bool endsName(char c) {
  return std::string_view(" \t\r\n\f/()<>[]{}%").find(c) != std::string::npos;
}

/** A default appearance ("/Helv 12 Tf 0 g") with its fonts renamed. */
std::string withFonts(const std::string& appearance,
                      const std::map<std::string, std::string>& newFonts) {
  std::string result;
  for (size_t at = 0; at < appearance.size();) {
    if (appearance[at] != '/') {
      result += appearance[at++];
      continue;
    }
    size_t end = at + 1;
    while (end < appearance.size() && !endsName(appearance[end])) {
      ++end;
    }
    const std::string name = appearance.substr(at, end - at);
    const auto renamed = newFonts.find(name);
    result += renamed == newFonts.end() ? name : renamed->second;
    at = end;
  }
  return result;
}

void renameFonts(QPDFObjectHandle dictionary, const std::map<std::string, std::string>& newFonts) {
  QPDFObjectHandle appearance = dictionary.getKey("/DA");
  if (appearance.isString() && !newFonts.empty()) {
    const std::string renamed = withFonts(appearance.getStringValue(), newFonts);
    dictionary.replaceKey("/DA", QPDFObjectHandle::newString(renamed));
  }
}

} // namespace

std::vector<QPDFObjectHandle> topFields(Document& part) {
  std::vector<QPDFObjectHandle> tops;
  std::set<QPDFObjGen> seen;
  const auto take = [&](const QPDFObjectHandle& field) {
    if (field.isIndirect() && seen.insert(field.getObjGen()).second) {
      tops.push_back(field);
    }
  };
  QPDFObjectHandle form = formOf(part);
  QPDFObjectHandle listed =
      form.isDictionary() ? form.getKey("/Fields") : QPDFObjectHandle::newNull();
  for (int i = 0; listed.isArray() && i < listed.getArrayNItems(); ++i) {
    QPDFObjectHandle field = listed.getArrayItem(i);
    if (field.isDictionary()) {
      take(field.isIndirect() ? field : part.pdf.makeIndirectObject(field));
    }
  }
  for (const QPDFObjectHandle& page : part.pages) {
    for (QPDFObjectHandle& each : annotationsOf(page)) {
      if (each.isIndirect() && each.getKey("/Subtype").isNameAndEquals("/Widget")) {
        QPDFObjectHandle top = topOf(each);
        if (top.hasKey("/T") || top.hasKey("/FT")) {
          take(top);
        }
      }
    }
  }
  return tops;
}

void detachFields(Document& part, const std::vector<QPDFObjectHandle>& fields,
                  const std::map<std::string, std::string>& newFonts) {
  QPDFObjectHandle form = formOf(part);
  for (QPDFObjectHandle field : fields) {
    for (const char* key : {"/DA", "/Q"}) {
      if (form.isDictionary() && form.hasKey(key) && !field.hasKey(key)) {
        field.replaceKey(key, form.getKey(key).unsafeShallowCopy());
      }
    }
  }
  std::set<QPDFObjGen> seen;
  const auto detach = [&](QPDFObjectHandle dictionary) {
    if (dictionary.isIndirect() && !seen.insert(dictionary.getObjGen()).second) {
      return false;
    }
    renameFonts(dictionary, newFonts);
    if (dictionary.getKey("/FT").isNameAndEquals("/Sig")) {
      dictionary.removeKey("/V");
    }
    return true;
  };
  std::vector<QPDFObjectHandle> waiting = fields;
  while (!waiting.empty()) {
    QPDFObjectHandle field = waiting.back();
    waiting.pop_back();
    if (!field.isDictionary() || !detach(field)) {
      continue;
    }
    QPDFObjectHandle kids = field.getKey("/Kids");
    for (int i = 0; kids.isArray() && i < kids.getArrayNItems(); ++i) {
      waiting.push_back(kids.getArrayItem(i));
    }
  }
  for (const QPDFObjectHandle& page : part.pages) {
    for (const QPDFObjectHandle& each : annotationsOf(page)) {
      (void)detach(each);
    }
  }
}

} // namespace melder
