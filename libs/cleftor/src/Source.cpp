#include "Source.h"

#include "cleftor/cleftor.h"
#include "common/Failure.h"
#include "pages/CryptFilter.h"
#include "pages/QuietDocument.h"
#include "pages/SourceInput.h"

#include <qpdf/QPDFExc.hh>

#include <algorithm>
#include <cctype>

namespace cleftor {

using common::Failure;
using common::refuseToOpen;

Source::Source(const std::string& path, const std::vector<std::string>& passwords,
               const std::atomic<bool>* stop, std::shared_ptr<const pages::PageTable> pages)
    : m_path(path), m_stop(stop), m_pages(std::move(pages)) {
  open(passwords);
  try {
    gatherFacts();
    if (m_pages == nullptr) {
      m_pages = std::make_shared<pages::PageTable>(*m_document, m_input);
    }
    gatherWholeDocument();
  } catch (const std::exception& error) {
    refuseToOpen(m_path, std::string("its pages cannot be read: ") + error.what());
  }
  if (m_pages->count() == 0) {
    refuseToOpen(m_path, "it has no pages");
  }
  forgetWarnings();
}

Source::Ticket Source::ticket() const {
  return {m_path,      m_password, m_input->identity(), m_pages->madeObjects() ? nullptr : m_pages,
          pageCount(), m_structure};
}

std::unique_ptr<Source> Source::of(const Ticket& ticket, const std::atomic<bool>& stop) {
  try {
    auto source =
        std::make_unique<Source>(ticket.path, std::vector{ticket.password}, &stop, ticket.pages);
    const bool same = source->m_input->identity() == ticket.identity &&
                      source->pageCount() == ticket.pageCount && !stop;
    source->m_structure = ticket.structure;
    return same ? std::move(source) : nullptr;
  } catch (const std::exception&) {
    return nullptr;
  }
}

void Source::open(const std::vector<std::string>& passwords) {
  // The empty one opens what anybody may open.
  const bool isOpen =
      std::ranges::any_of(passwords, [&](const auto& one) { return openWith(one); });
  if (!isOpen && !openWith("") && !openWithoutKey()) {
    refuseToOpen(m_path, passwords.empty() ? "it needs a password" : "the password is not right");
  }
}

/// Where strings and streams are left as they are and attachments alone are encrypted, no key is
/// needed for the pages.
bool Source::openWithoutKey() {
  if (!m_hasPlainPages) {
    return false;
  }
  m_hasNoKey = true;
  return openWith("");
}

void Source::read(QPDF& document) const {
  // A key is taken as it is, where a password would be compared.
  static constexpr std::string_view anyKey =
      "0000000000000000000000000000000000000000000000000000000000000000";
  document.setPasswordIsHexKey(m_hasNoKey);
  document.processInputSource(m_input, m_hasNoKey ? anyKey.data() : m_password.c_str());
}

bool Source::isLocked(QPDFObjectHandle stream) const {
  QPDFObjectHandle entries = stream.getDict();
  return m_hasNoKey && (entries.getKey("/Type").isNameAndEquals("/EmbeddedFile") ||
                        pages::hasKeyOfItsOwn(entries));
}

/// False when the password is not right; any other fault throws.
bool Source::openWith(const std::string& password) {
  auto document = pages::quietDocument();
  m_input = std::make_shared<pages::SourceInput>(m_path, m_stop);
  m_password = password;
  try {
    read(*document);
  } catch (const QPDFExc& error) {
    if (error.getErrorCode() == qpdf_e_password) {
      m_hasPlainPages = pages::hasPlainPages(document->getTrailer().getKey("/Encrypt"));
      return false;
    }
    refuseToOpen(m_path, error.getMessageDetail());
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    refuseToOpen(m_path, error.what());
  }
  m_document = std::move(document);
  return true;
}

/// A repaired document is searched for its objects once, not again and again.
bool Source::mayLetGo() const {
  return pageCount() > residentPages && !m_pages->madeObjects() &&
         (m_facts & CLEFTOR_FILE_REPAIRED) == 0 && m_returns < mostReturns;
}

void Source::letGoOf(QPDFObjGen object) {
  m_document->replaceObject(object, QPDFObjectHandle::newNull());
  m_gone.insert(object);
}

void Source::renew() {
  auto document = pages::quietDocument();
  try {
    read(*document);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    throw Failure(CLEFTOR_DAMAGED, "\"" + m_path + "\" can no longer be read: " + error.what());
  }
  m_earlierDocuments.push_back(std::move(m_document));
  m_document = std::move(document);
  m_gone.clear();
  m_pagesGone = 0;
}

void Source::bringBack() {
  ++m_returns;
  renew();
}

void Source::forgetEarlier() {
  if (m_earlierDocuments.empty()) {
    return;
  }
  m_names.reset();
  m_outline.reset();
  m_labels.reset();
  m_fields.reset();
  m_layers.reset();
  m_earlierDocuments.clear();
}

QPDFObjectHandle Source::object(QPDFObjGen object) {
  if (m_gone.count(object) != 0) {
    bringBack();
  }
  return m_document->getObject(object);
}

bool Source::lacksPartOf(QPDFObjectHandle page) const {
  QPDFObjectHandle contents = page.getKey("/Contents");
  if (m_gone.count(contents.getObjGen()) != 0) {
    return true;
  }
  const int count = contents.isArray() ? contents.getArrayNItems() : 0;
  for (int i = 0; i < count; ++i) {
    if (m_gone.count(contents.getArrayItem(i).getObjGen()) != 0) {
      return true;
    }
  }
  return false;
}

QPDFObjectHandle Source::page(int32_t index) {
  QPDFObjectHandle page = object(m_pages->object(index));
  if (!page.isDictionary()) {
    throw Failure(CLEFTOR_DAMAGED, "\"" + m_path + "\" is not the file any more that was opened");
  }
  if (!m_gone.empty() && lacksPartOf(page)) {
    bringBack();
    return this->page(index);
  }
  return page;
}

void Source::makeRoom() {
  if (m_pagesGone >= std::max(pagesARenewal, pageCount() / mostRenewals)) {
    renew();
  }
  forgetEarlier();
}

void Source::letGoOfPages(int32_t first, int32_t last) {
  if (!mayLetGo()) {
    return;
  }
  for (int32_t index = first; index <= last; ++index) {
    letGoOfPage(m_pages->object(index));
  }
  m_pagesGone += last - first + 1;
}

void Source::letGoOfPage(QPDFObjGen object) {
  QPDFObjectHandle contents = m_document->getObject(object).getKey("/Contents");
  const auto drop = [this](QPDFObjectHandle content) {
    // What several pages draw is kept, once it has shown.
    if (content.isStream() && m_cache.find(content.getObjGen()) == nullptr) {
      letGoOf(content.getObjGen());
    }
  };
  drop(contents);
  for (int i = 0; contents.isArray() && i < contents.getArrayNItems(); ++i) {
    drop(contents.getArrayItem(i));
  }
  letGoOf(object);
}

bool Source::isChanged() const {
  return m_input->isCut() || common::FileIdentity::of(m_path) != m_input->identity();
}

void Source::letGoOfFile() {
  for (const auto& document : m_earlierDocuments) {
    document->closeInputSource();
  }
  m_document->closeInputSource();
  m_input.reset();
}

void Source::gatherFacts() {
  if (m_document->isEncrypted()) {
    m_facts |= CLEFTOR_FILE_ENCRYPTED;
  }
  if (pages::isRepaired(*m_document)) {
    m_facts |= CLEFTOR_FILE_REPAIRED;
  }
  m_claims = pages::Claims(catalog());
  // The table itself is a stream only where objects may stand in streams, too.
  if (trailer().getKey("/Type").isNameAndEquals("/XRef") && m_claims.archivalPart() != "1") {
    m_deflater = std::make_unique<Deflater>();
  }
}

void Source::gatherWholeDocument() {
  QPDFObjectHandle root = catalog();
  const auto add = [this](QPDFObjectHandle value) {
    if (value.isIndirect()) {
      m_wholeDocument.insert(value.getObjGen());
    }
  };
  add(root);
  for (const char* key : {"/StructTreeRoot", "/Outlines", "/AcroForm", "/Threads", "/Names",
                          "/Dests", "/PageLabels", "/DPartRoot", "/OCProperties"}) {
    add(root.getKey(key));
  }
}

std::string Source::version() const {
  const std::string version = m_document->getPDFVersion();
  const bool sound = version.size() == 3 &&
                     std::isdigit(static_cast<unsigned char>(version[0])) != 0 &&
                     version[1] == '.' && std::isdigit(static_cast<unsigned char>(version[2])) != 0;
  return sound ? version : "1.7";
}

const StructureIndex* Source::structure() {
  std::call_once(m_structure->once, [this] {
    // Pages that were no objects of the file cannot be what an element names.
    if (!catalog().getKey("/StructTreeRoot").isDictionary() || m_pages->madeObjects()) {
      return;
    }
    auto document = pages::quietDocument();
    read(*document);
    auto index = std::make_unique<StructureIndex>(*document, m_input, *m_pages);
    if (index->isSound()) {
      m_structure->index = std::move(index);
    }
  });
  return m_structure->index.get();
}

pages::NamedDestinations& Source::names() {
  if (!m_names) {
    m_names = std::make_unique<pages::NamedDestinations>(catalog(), *m_pages);
  }
  return *m_names;
}

pages::OutlineIndex& Source::outline() {
  if (!m_outline) {
    m_outline = std::make_unique<pages::OutlineIndex>(catalog(), names());
  }
  return *m_outline;
}

pages::PageLabels& Source::labels() {
  if (!m_labels) {
    m_labels = std::make_unique<pages::PageLabels>(catalog());
  }
  return *m_labels;
}

FieldIndex& Source::fields() {
  if (!m_fields) {
    m_fields = std::make_unique<FieldIndex>(catalog());
  }
  return *m_fields;
}

LayerIndex& Source::layers() {
  if (!m_layers) {
    m_layers = std::make_unique<LayerIndex>(catalog());
  }
  return *m_layers;
}

} // namespace cleftor
