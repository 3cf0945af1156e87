#include "layers.h"

#include "update.h"

namespace melder {

namespace {

std::vector<QPDFObjectHandle> itemsOf(QPDFObjectHandle array) {
  return array.isArray() ? array.getArrayAsVector() : std::vector<QPDFObjectHandle>();
}

std::vector<std::string> textsOf(const QPDFObjectHandle& array) {
  std::vector<std::string> texts;
  for (QPDFObjectHandle& item : itemsOf(array)) {
    texts.push_back(item.unparse());
  }
  return texts;
}

std::set<QPDFObjGen> idsOf(const QPDFObjectHandle& array) {
  std::set<QPDFObjGen> ids;
  for (const QPDFObjectHandle& item : itemsOf(array)) {
    ids.insert(item.getObjGen());
  }
  return ids;
}

std::string listText(const std::vector<std::string>& items) {
  std::string text = "[";
  for (const std::string& item : items) {
    text += item + ' ';
  }
  return text + ']';
}

/** Which groups a configuration shows at first. */
class Shown {
public:
  explicit Shown(QPDFObjectHandle configuration) {
    if (configuration.isDictionary()) {
      m_byDefault = !configuration.getKey("/BaseState").isNameAndEquals("/OFF");
      m_on = idsOf(configuration.getKey("/ON"));
      m_off = idsOf(configuration.getKey("/OFF"));
    }
  }
  [[nodiscard]] bool byDefault() const { return m_byDefault; }
  [[nodiscard]] bool operator()(QPDFObjGen group) const {
    return m_byDefault ? !m_off.contains(group) : m_on.contains(group);
  }

private:
  bool m_byDefault = true;
  std::set<QPDFObjGen> m_on;
  std::set<QPDFObjGen> m_off;
};

QPDFObjectHandle propertiesOf(QPDF& pdf) {
  QPDFObjectHandle properties = pdf.getRoot().getKey("/OCProperties");
  return properties.isDictionary() ? properties : QPDFObjectHandle::newDictionary();
}

} // namespace

std::string Layers::keyOf(const std::string& group, bool shown) {
  return (shown ? "shown " : "hidden ") + group;
}

void Layers::read(QPDF& pdf) {
  QPDFObjectHandle properties = propertiesOf(pdf);
  m_id = properties.getObjGen();
  m_properties = dictText(properties);
  QPDFObjectHandle standard = properties.getKey("/D");
  m_default = dictText(standard);
  const Shown shown(standard);
  m_shownByDefault = shown.byDefault();
  const ObjectPrinter printer(
      [](const QPDFObjectHandle& object) { return referenceTo(object.getObjGen()); });
  for (QPDFObjectHandle& group : itemsOf(properties.getKey("/OCGs"))) {
    m_groups.push_back(group.unparse());
    if (group.isIndirect() && group.isDictionary()) {
      const QPDFObjGen id = group.getObjGen();
      m_known.emplace(keyOf(written(printer.entries(group)), shown(id)), id);
    }
  }
  if (standard.isDictionary()) {
    m_on = textsOf(standard.getKey("/ON"));
    m_off = textsOf(standard.getKey("/OFF"));
    m_order = textsOf(standard.getKey("/Order"));
    m_automatic = textsOf(standard.getKey("/AS"));
  }
}

void Layers::append(Document& part, Transplant& transplant, Update& update, Catalog& catalog) {
  QPDFObjectHandle properties = propertiesOf(part.pdf);
  QPDFObjectHandle standard = properties.getKey("/D");
  const Shown shown(standard);
  std::vector<QPDFObjectHandle> added;
  for (QPDFObjectHandle& group : itemsOf(properties.getKey("/OCGs"))) {
    if (!group.isIndirect() || !group.isDictionary()) {
      continue;
    }
    const bool isShown = shown(group.getObjGen());
    const std::string text = written(transplant.entries(group, Transplant::Sharing::Allowed));
    const auto [known, isNew] = m_known.try_emplace(keyOf(text, isShown), QPDFObjGen());
    if (isNew) {
      known->second = update.add(text);
      const std::string reference = referenceTo(known->second);
      m_groups.push_back(reference);
      if (isShown != m_shownByDefault) {
        (isShown ? m_on : m_off).push_back(reference);
      }
      added.push_back(group);
    }
    transplant.pin(group.getObjGen(), known->second);
  }
  if (!added.empty()) {
    addToLists(standard, added, transplant);
    write(update, catalog);
  }
}

/** New groups in the list a person sees, in the part's order, and under the part's automatic rules.
 */
void Layers::addToLists(QPDFObjectHandle part, const std::vector<QPDFObjectHandle>& added,
                        Transplant& transplant) {
  std::set<QPDFObjGen> fresh;
  for (const QPDFObjectHandle& group : added) {
    fresh.insert(group.getObjGen());
  }
  const bool listed = part.isDictionary() && part.getKey("/Order").isArray();
  for (QPDFObjectHandle item : listed ? itemsOf(part.getKey("/Order")) : added) {
    if (item.isArray() || fresh.contains(item.getObjGen())) {
      m_order.push_back(transplant.text(item, Transplant::Sharing::Forbidden));
    }
  }
  for (const QPDFObjectHandle& rule :
       part.isDictionary() ? itemsOf(part.getKey("/AS")) : std::vector<QPDFObjectHandle>()) {
    m_automatic.push_back(transplant.text(rule, Transplant::Sharing::Forbidden));
  }
}

void Layers::write(Update& update, Catalog& catalog) {
  const auto setList = [this](const char* key, const std::vector<std::string>& items) {
    if (!items.empty()) {
      m_default[key] = listText(items);
    }
  };
  setList("/ON", m_on);
  setList("/OFF", m_off);
  setList("/Order", m_order);
  setList("/AS", m_automatic);
  m_properties["/D"] = written(m_default);
  m_properties["/OCGs"] = listText(m_groups);
  if (!m_id.isIndirect()) {
    m_id = update.reserve();
    catalog.set("/OCProperties", referenceTo(m_id));
  }
  update.put(m_id, written(m_properties));
}

} // namespace melder
