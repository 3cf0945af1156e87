#include "QuietDocument.h"

#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFLogger.hh>

#include <algorithm>

namespace pages {

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

bool isRepaired(QPDF& document) {
  const auto warnings = document.getWarnings();
  return std::any_of(warnings.begin(), warnings.end(), [](const QPDFExc& warning) {
    return warning.getMessageDetail().find("reconstruct") != std::string::npos;
  });
}

} // namespace pages
