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

Source::Source(const std::string& path, const std::string& password) : path_(path) {
  open(password);
  try {
    gatherFacts();
    pages_ = std::make_unique<PageTable>(*document_);
    gatherWholeDocument();
  } catch (const std::exception& error) {
    refuse(path_, std::string("its pages cannot be read: ") + error.what());
  }
  if (pages_->count() == 0) {
    refuse(path_, "it has no pages");
  }
  forgetWarnings();
}

void Source::open(const std::string& password) {
  for (const std::string& candidate : passwordCandidates(password)) {
    if (openWith(candidate)) {
      return;
    }
  }
  refuse(path_, password.empty() ? "it needs a password" : "the password is not right");
}

/** False when the password is not right; any other fault throws. */
bool Source::openWith(const std::string& password) {
  auto document = quietDocument();
  try {
    document->processInputSource(std::make_shared<SourceInput>(path_), password.c_str());
  } catch (const QPDFExc& error) {
    if (error.getErrorCode() == qpdf_e_password) {
      return false;
    }
    refuse(path_, error.getMessageDetail());
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    refuse(path_, error.what());
  }
  document_ = std::move(document);
  return true;
}

void Source::gatherFacts() {
  if (document_->isEncrypted()) {
    facts_ |= CLEFTOR_FILE_ENCRYPTED;
  }
  for (const QPDFExc& warning : document_->getWarnings()) {
    if (warning.getMessageDetail().find("reconstruct") != std::string::npos) {
      facts_ |= CLEFTOR_FILE_REPAIRED;
    }
  }
}

void Source::gatherWholeDocument() {
  QPDFObjectHandle root = catalog();
  const auto add = [this](QPDFObjectHandle value) {
    if (value.isIndirect()) {
      wholeDocument_.insert(value.getObjGen());
    }
  };
  add(root);
  for (const char* key : {"/StructTreeRoot", "/Outlines", "/AcroForm", "/Threads", "/Names",
                          "/Dests", "/PageLabels", "/DPartRoot", "/OCProperties"}) {
    add(root.getKey(key));
  }
}

std::string Source::version() const {
  const std::string version = document_->getPDFVersion();
  const bool sound = version.size() == 3 &&
                     std::isdigit(static_cast<unsigned char>(version[0])) != 0 &&
                     version[1] == '.' && std::isdigit(static_cast<unsigned char>(version[2])) != 0;
  return sound ? version : "1.7";
}

NamedDestinations& Source::names() {
  if (!names_) {
    names_ = std::make_unique<NamedDestinations>(catalog(), *pages_);
  }
  return *names_;
}

OutlineIndex& Source::outline() {
  if (!outline_) {
    outline_ = std::make_unique<OutlineIndex>(catalog(), names());
  }
  return *outline_;
}

PageLabels& Source::labels() {
  if (!labels_) {
    labels_ = std::make_unique<PageLabels>(catalog());
  }
  return *labels_;
}

FieldIndex& Source::fields() {
  if (!fields_) {
    fields_ = std::make_unique<FieldIndex>(catalog());
  }
  return *fields_;
}

LayerIndex& Source::layers() {
  if (!layers_) {
    layers_ = std::make_unique<LayerIndex>(catalog());
  }
  return *layers_;
}

} // namespace cleftor
