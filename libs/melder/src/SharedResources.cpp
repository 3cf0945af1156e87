#include "SharedResources.h"

#include <qpdf/QPDFExc.hh>

#include <algorithm>
#include <functional>
#include <optional>
#include <set>

namespace melder {

namespace {

constexpr int sampledPages = 16;
constexpr int deepestForm = 8;
constexpr int deepestObject = 32;
constexpr size_t mostObjects = 4000;
/// Text and data that one append compares at most, in bytes.
constexpr size_t mostText = size_t{64} * 1024 * 1024;

using Visit = std::function<void(const QPDFObjectHandle& resource)>;

QPDFObjectHandle dictionaryOf(QPDFObjectHandle object) {
  return object.isStream() ? object.getDict() : object;
}

/// The fonts, images and so on that are objects of their own, below forms as well.
void visitResources(QPDFObjectHandle resources, const Visit& visit, pages::ObjGenSet& seen,
                    int depth) {
  if (!resources.isDictionary() || depth > deepestForm) {
    return;
  }
  for (const char* kind : {"/Font", "/XObject", "/ColorSpace", "/ExtGState", "/Pattern"}) {
    QPDFObjectHandle list = resources.getKey(kind);
    if (!list.isDictionary()) {
      continue;
    }
    for (auto& [name, resource] : list.getDictAsMap()) {
      if (!resource.isIndirect() || seen.size() >= mostObjects ||
          !seen.insert(resource.getObjGen()).second) {
        continue;
      }
      visit(resource);
      QPDFObjectHandle dictionary = dictionaryOf(resource);
      if (dictionary.isDictionary()) {
        visitResources(dictionary.getKey("/Resources"), visit, seen, depth + 1);
      }
    }
  }
}

void visitResources(Document& document, const std::set<int32_t>& pages, const Visit& visit) {
  pages::ObjGenSet seen;
  for (const int32_t page : pages) {
    QPDFObjectHandle own = document.page(page).getKey("/Resources");
    visitResources(own.isNull() ? document.pages().inherited(page, "/Resources") : own, visit, seen,
                   0);
  }
  QPDFObjectHandle form = document.catalog().getKey("/AcroForm");
  if (form.isDictionary()) {
    visitResources(form.getKey("/DR"), visit, seen, 0);
  }
}

/// Equal objects have equal texts; few that differ have.
std::string shallowText(const QPDFObjectHandle& object) {
  QPDFObjectHandle dictionary = dictionaryOf(object);
  if (!dictionary.isDictionary()) {
    return std::to_string(static_cast<int>(dictionary.getTypeCode()));
  }
  std::string text;
  for (auto& [key, value] : dictionary.getDictAsMap()) {
    // An encrypted file tells the lengths of encrypted data.
    if (value.isScalar() && key != "/Length") {
      text += key + ' ' + value.unparseResolved() + '\n';
    }
  }
  return text;
}

/// An object with everything below it as text and data, the same for equal ones of two files.
class WholeText {
public:
  /// `standIn`: what a layer is in the receiving file; layers of one name may differ in what shows.
  using StandIn = std::function<QPDFObjectHandle(QPDFObjectHandle layer)>;

  explicit WholeText(StandIn standIn) : m_standIn(std::move(standIn)) {}

  /// Nothing when there is too much of it, of others before too, or it leads back to pages.
  std::optional<std::string> of(const QPDFObjectHandle& object) {
    m_text.clear();
    m_fits = m_made < mostText;
    add(object, 0);
    m_made += m_text.size();
    return m_fits ? std::optional(m_text) : std::nullopt;
  }

private:
  void add(QPDFObjectHandle object, int depth) {
    m_fits = m_fits && depth < deepestObject && m_text.size() < mostText &&
             !object.isDictionaryOfType("/Page");
    if (!m_fits) {
      return;
    }
    if (object.isDictionaryOfType("/OCG")) {
      m_text += m_standIn(object).unparse();
    } else if (object.isStream()) {
      add(object.getDict(), depth + 1);
      addData(object);
    } else if (object.isDictionary()) {
      m_text += "<<";
      for (const auto& [key, value] : object.getDictAsMap()) {
        if (key != "/Length" && key != "/StructParent" && key != "/StructParents") {
          m_text += key + ' ';
          add(value, depth + 1);
        }
      }
      m_text += ">>";
    } else if (object.isArray()) {
      m_text += '[';
      for (const QPDFObjectHandle& item : object.getArrayAsVector()) {
        add(item, depth + 1);
      }
      m_text += ']';
    } else {
      m_text += object.unparseResolved() + ' ';
    }
  }

  void addData(QPDFObjectHandle stream) {
    try {
      const auto data = stream.getRawStreamData();
      m_text += std::to_string(data->getSize()) + ':';
      m_text.append(reinterpret_cast<const char*>(data->getBuffer()), data->getSize());
    } catch (const QPDFExc&) {
      m_fits = false; // damaged data equals nothing; whether it may be lost is decided elsewhere
    }
  }

  StandIn m_standIn;
  std::string m_text;
  size_t m_made = 0; ///< all texts together
  bool m_fits = true;
};

} // namespace

SharedResources::SharedResources(Document& receiver) {
  std::set<int32_t> sample;
  for (int32_t i = 0; i < std::min(sampledPages, receiver.pageCount()); ++i) {
    sample.insert(i);
    sample.insert(receiver.pageCount() - 1 - i);
  }
  visitResources(receiver, sample, [this](const QPDFObjectHandle& resource) {
    m_known.emplace(shallowText(resource), resource);
  });
}

void SharedResources::placeKnown(Document& part, Transplant& transplant) {
  std::set<int32_t> all;
  for (int32_t page = 0; page < part.pageCount(); ++page) {
    all.insert(page);
  }
  WholeText mine([&](QPDFObjectHandle layer) { return transplant.placed(layer.getObjGen()); });
  WholeText theirs([](const QPDFObjectHandle& layer) { return layer; });
  visitResources(part, all, [&](const QPDFObjectHandle& resource) {
    if (transplant.isPlaced(resource.getObjGen())) {
      return;
    }
    const auto [begin, end] = m_known.equal_range(shallowText(resource));
    const auto text = begin == end ? std::nullopt : mine.of(resource);
    for (auto known = begin; text && known != end; ++known) {
      if (theirs.of(known->second) == text) {
        transplant.place(resource.getObjGen(), known->second);
        return;
      }
    }
  });
}

} // namespace melder
