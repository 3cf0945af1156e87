#include "Source.h"

#include "Failure.h"
#include "Passwords.h"
#include "SourceInput.h"
#include "cleftor/cleftor.h"

#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFLogger.hh>

#include <cctype>

namespace cleftor {

namespace {

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
  throw Failure(CLEFTOR_CANNOT_OPEN, "Unable to open \"" + path + "\": " + reason);
}

std::shared_ptr<QPDF> quietDocument() {
  auto document = QPDF::create();
  const auto logger = QPDFLogger::create();
  logger->setInfo(logger->discard());
  logger->setWarn(logger->discard());
  logger->setError(logger->discard());
  document->setLogger(logger);
  document->setSuppressWarnings(true);
  return document;
}

} // namespace

Source::Source(const std::string& path, const std::string& password) : m_path(path) {
  open(password);
  try {
    gatherFacts();
    m_pages = std::make_unique<PageTable>(*m_document);
    gatherWholeDocument();
  } catch (const std::exception& error) {
    refuse(m_path, std::string("its pages cannot be read: ") + error.what());
  }
  if (m_pages->count() == 0) {
    refuse(m_path, "it has no pages");
  }
  forgetWarnings();
}

void Source::open(const std::string& password) {
  for (const std::string& candidate : passwordCandidates(password)) {
    if (openWith(candidate)) {
      return;
    }
  }
  refuse(m_path, password.empty() ? "it needs a password" : "the password is not right");
}

/** False when the password is not right; any other fault throws. */
bool Source::openWith(const std::string& password) {
  auto document = quietDocument();
  try {
    document->processInputSource(std::make_shared<SourceInput>(m_path), password.c_str());
  } catch (const QPDFExc& error) {
    if (error.getErrorCode() == qpdf_e_password) {
      return false;
    }
    refuse(m_path, error.getMessageDetail());
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    refuse(m_path, error.what());
  }
  m_document = std::move(document);
  return true;
}

void Source::gatherFacts() {
  if (m_document->isEncrypted()) {
    m_facts |= CLEFTOR_FILE_ENCRYPTED;
  }
  for (const QPDFExc& warning : m_document->getWarnings()) {
    if (warning.getMessageDetail().find("reconstruct") != std::string::npos) {
      m_facts |= CLEFTOR_FILE_REPAIRED;
    }
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

NamedDestinations& Source::names() {
  if (!m_names) {
    m_names = std::make_unique<NamedDestinations>(catalog(), *m_pages);
  }
  return *m_names;
}

OutlineIndex& Source::outline() {
  if (!m_outline) {
    m_outline = std::make_unique<OutlineIndex>(catalog(), names());
  }
  return *m_outline;
}

PageLabels& Source::labels() {
  if (!m_labels) {
    m_labels = std::make_unique<PageLabels>(catalog());
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
