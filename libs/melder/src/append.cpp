#include "append.h"

#include "failure.h"
#include "melder/melder.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <cstdio>
#include <filesystem>

namespace melder {

namespace {

void openQuietly(QPDF& document, const std::string& path) {
  document.setSuppressWarnings(true);
  document.processFile(path.c_str());
}

void writeJoined(const std::string& first, const std::string& second, const std::string& target) {
  QPDF base;
  QPDF part;
  openQuietly(base, first);
  openQuietly(part, second);
  QPDFPageDocumentHelper pages(base);
  QPDFAcroFormDocumentHelper fields(base);
  QPDFAcroFormDocumentHelper partFields(part);
  for (auto& page : QPDFPageDocumentHelper(part).getAllPages()) {
    pages.addPage(page, false);
    auto added = pages.getAllPages().back();
    fields.fixCopiedAnnotations(added.getObjectHandle(), page.getObjectHandle(), partFields);
  }
  const std::string aside = target + ".melder-part";
  QPDFWriter writer(base, aside.c_str());
  writer.write();
  std::error_code failed;
  std::filesystem::rename(aside, target, failed);
  if (failed) {
    std::remove(aside.c_str());
    throw Failure(MELDER_CANNOT_WRITE, target + ": " + failed.message());
  }
}

} // namespace

void appendToFile(const std::string& addition, const std::string& existing) {
  writeJoined(existing, addition, existing);
}

void appendToNewFile(const std::string& first, const std::string& second,
                     const std::string& target) {
  writeJoined(first, second, target);
}

void dropWorkingCopies() noexcept {}

} // namespace melder
