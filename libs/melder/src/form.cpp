#include "form.h"

#include "part_fields.h"
#include "update.h"

#include <algorithm>
#include <charconv>

namespace melder {

namespace {

/** So many fields at the top, then parts are put below naming fields, whatever their names are. */
constexpr size_t kMostAtTop = 128;
constexpr size_t kNamingKids = 32;
constexpr int kHighestNaming = 9;
/** So many fonts for editing; a field whose font is one too many is edited in the form's own. */
constexpr size_t kMostFonts = 256;
const std::string kNamingStem = "Appended";

std::string nameOf(QPDFObjectHandle field) {
  QPDFObjectHandle name = field.getKey("/T");
  return name.isString() ? name.getUTF8Value() : std::string();
}

/** The height that the name of a naming root tells; 0 for any other field. */
int namingHeight(QPDFObjectHandle field) {
  const std::string name = nameOf(field);
  if (!name.starts_with(kNamingStem) || field.hasKey("/FT")) {
    return 0;
  }
  int height = 0;
  const char* end = name.data() + name.size();
  const auto parsed = std::from_chars(name.data() + kNamingStem.size(), end, height);
  return parsed.ec == std::errc() && parsed.ptr == end && height <= kHighestNaming
             ? std::max(height, 0)
             : 0;
}

} // namespace

void Form::read(QPDF& pdf) {
  QPDFObjectHandle form = pdf.getRoot().getKey("/AcroForm");
  if (!form.isDictionary()) {
    return;
  }
  m_id = form.getObjGen();
  m_entries = dictText(form);
  m_entries.erase("/Fields");
  QPDFObjectHandle resources = form.getKey("/DR");
  if (resources.isDictionary()) {
    m_entries.erase("/DR");
    m_resourcesId = resources.getObjGen();
    m_resources = dictText(resources);
    m_fonts = dictText(resources.getKey("/Font"));
  }
  QPDFObjectHandle fields = form.getKey("/Fields");
  std::vector<QPDFObjectHandle> roots;
  for (int i = 0; fields.isArray() && i < fields.getArrayNItems(); ++i) {
    QPDFObjectHandle field = fields.getArrayItem(i);
    m_fields.push_back(field.unparse());
    if (field.isDictionary()) {
      m_names.insert(nameOf(field));
      roots.push_back(field);
    }
  }
  readNaming(roots);
}

void Form::readNaming(const std::vector<QPDFObjectHandle>& roots) {
  QPDFObjectHandle best;
  for (const QPDFObjectHandle& root : roots) {
    const int height = namingHeight(root);
    if (height > m_namingHeight) {
      m_namingHeight = height;
      best = root;
    }
  }
  if (m_namingHeight > 0 && !readNamingEdge(best, m_namingHeight)) {
    m_naming.clear(); // nothing to go on with: the next part opens a higher one
  }
}

bool Form::readNamingEdge(const QPDFObjectHandle& root, int height) {
  for (QPDFObjectHandle node = root; static_cast<int>(m_naming.size()) < height;) {
    QPDFObjectHandle kids = node.isDictionary() ? node.getKey("/Kids") : node;
    if (!node.isIndirect() || !kids.isArray() || kids.getArrayNItems() == 0 ||
        kids.getArrayNItems() > static_cast<int>(kNamingKids)) {
      return false;
    }
    Naming naming = {.id = node.getObjGen(), .name = nameOf(node), .kids = {}};
    for (QPDFObjectHandle& kid : kids.getArrayAsVector()) {
      naming.kids.push_back(kid.unparse());
    }
    m_naming.push_back(std::move(naming));
    node = kids.getArrayItem(kids.getArrayNItems() - 1);
  }
  return true;
}

void Form::writeNaming(size_t level, Update& update) {
  const Naming& node = m_naming[level];
  DictText text = {{"/T", stringText(node.name)}};
  if (level > 0) {
    text["/Parent"] = referenceTo(m_naming[level - 1].id);
  }
  std::string kids = "[";
  for (const std::string& kid : node.kids) {
    kids += kid + ' ';
  }
  text["/Kids"] = kids + ']';
  update.put(node.id, written(text));
}

/** Opens a naming field for one part, below nodes that have room; returns its number. */
QPDFObjGen Form::openNaming(Update& update) {
  size_t open = m_naming.size();
  while (open > 0 && m_naming[open - 1].kids.size() >= kNamingKids) {
    --open;
  }
  m_naming.resize(open);
  if (open == 0) {
    std::string name;
    do {
      name = kNamingStem + std::to_string(++m_namingHeight);
    } while (!m_names.insert(name).second);
    m_naming.push_back({.id = update.reserve(), .name = name, .kids = {}});
    m_fields.push_back(referenceTo(m_naming.front().id));
    m_changed = true;
  }
  size_t changed = m_naming.size() - 1;
  while (static_cast<int>(m_naming.size()) < m_namingHeight) {
    const QPDFObjGen id = update.reserve();
    m_naming.back().kids.push_back(referenceTo(id));
    const std::string name = std::to_string(m_naming.back().kids.size());
    m_naming.push_back({.id = id, .name = name, .kids = {}});
  }
  const QPDFObjGen own = update.reserve();
  m_naming.back().kids.push_back(referenceTo(own));
  for (; changed < m_naming.size(); ++changed) {
    writeNaming(changed, update);
  }
  return own;
}

/** Takes the part's fonts for editing in; returns those that had to get another name. */
std::map<std::string, std::string> Form::mergeFonts(QPDFObjectHandle resources,
                                                    Transplant& transplant) {
  std::map<std::string, std::string> renamed;
  QPDFObjectHandle fonts =
      resources.isDictionary() ? resources.getKey("/Font") : QPDFObjectHandle::newNull();
  if (!fonts.isDictionary()) {
    return renamed;
  }
  for (const auto& [key, font] : fonts.getDictAsMap()) {
    if (m_fonts.size() >= kMostFonts) {
      break;
    }
    const std::string text = transplant.text(font, Transplant::Sharing::Allowed);
    std::string name = key;
    for (int again = 1; m_fonts.contains(name) && m_fonts[name] != text; ++again) {
      name = key + '-' + std::to_string(again);
    }
    m_fontsChanged = m_fontsChanged || !m_fonts.contains(name);
    m_fonts[name] = text;
    if (name != key) {
      renamed[key] = name;
    }
  }
  return renamed;
}

void Form::rootFields(const std::vector<QPDFObjectHandle>& fields, Transplant& transplant) {
  for (QPDFObjectHandle field : fields) {
    field.removeKey("/Parent");
    m_names.insert(nameOf(field));
    m_fields.push_back(transplant.text(field, Transplant::Sharing::Forbidden));
    m_changed = true;
  }
}

void Form::nameFields(const std::vector<QPDFObjectHandle>& fields, Document& part,
                      Transplant& transplant, Update& update) {
  const QPDFObjGen naming = openNaming(update);
  QPDFObjectHandle parent = part.pdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
  transplant.pin(parent.getObjGen(), naming);
  std::string kids = "[";
  for (QPDFObjectHandle field : fields) {
    field.replaceKey("/Parent", parent);
    kids += transplant.text(field, Transplant::Sharing::Forbidden) + ' ';
  }
  DictText text = {{"/Kids", kids + ']'}};
  text["/Parent"] = referenceTo(m_naming.back().id);
  text["/T"] = stringText(std::to_string(m_naming.back().kids.size()));
  update.put(naming, written(text));
}

void Form::append(Document& part, Transplant& transplant, Update& update, Catalog& catalog) {
  const std::vector<QPDFObjectHandle> fields = topFields(part);
  QPDFObjectHandle form = part.pdf.getRoot().getKey("/AcroForm");
  std::map<std::string, std::string> newFonts;
  if (!fields.empty() && form.isDictionary()) {
    newFonts = mergeFonts(form.getKey("/DR"), transplant);
  }
  detachFields(part, fields, newFonts);
  std::vector<QPDFObjectHandle> free;
  std::vector<QPDFObjectHandle> taken;
  for (const QPDFObjectHandle& field : fields) {
    const bool isFree =
        m_fields.size() + free.size() < kMostAtTop && !m_names.contains(nameOf(field));
    (isFree ? free : taken).push_back(field);
  }
  rootFields(free, transplant);
  if (!taken.empty()) {
    nameFields(taken, part, transplant, update);
  }
  QPDFObjectHandle redraw =
      form.isDictionary() ? form.getKey("/NeedAppearances") : QPDFObjectHandle::newNull();
  if (redraw.isBool() && redraw.getBoolValue() && !fields.empty() &&
      m_entries["/NeedAppearances"] != "true") {
    m_entries["/NeedAppearances"] = "true";
    m_changed = true;
  }
  write(update, catalog);
}

void Form::write(Update& update, Catalog& catalog) {
  if (m_fontsChanged) {
    m_resources["/Font"] = written(m_fonts);
    if (!m_resourcesId.isIndirect()) {
      m_resourcesId = update.reserve();
      m_changed = true;
    }
    update.put(m_resourcesId, written(m_resources));
    m_fontsChanged = false;
  }
  if (!m_changed) {
    return;
  }
  DictText text = m_entries;
  std::string list = "[";
  for (const std::string& field : m_fields) {
    list += field + ' ';
  }
  text["/Fields"] = list + ']';
  if (m_resourcesId.isIndirect()) {
    text["/DR"] = referenceTo(m_resourcesId);
  } else if (!m_resources.empty()) {
    text["/DR"] = written(m_resources);
  }
  if (!m_id.isIndirect()) {
    m_id = update.reserve();
    catalog.set("/AcroForm", referenceTo(m_id));
  }
  update.put(m_id, written(text));
  m_changed = false;
}

} // namespace melder
